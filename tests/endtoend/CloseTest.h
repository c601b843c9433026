#pragma once

#include "harness/process/Polling.h"
#include "tests/endtoend/EndToEnd.h"

#include <QRegularExpression>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// The sanitizer searches for leaks after the program itself has finished.
constexpr int closeLimitMs = 15000;
#else
constexpr int closeLimitMs = 2000;
#endif

/// Closes the window in some state of the program and checks that the program ends in time.
class CloseTest : public EndToEndTest
{
protected:
    const QString background = QStringLiteral("backgroundWidget");
    const QString question = QStringLiteral("leaveQuestion");
    /// The worker's last line. It shows that all messages of the worker were delivered.
    const char *const closedEarly = "The program was closed before the update had ended.";

    void start() { ASSERT_TRUE(scenario().start()) << scenario().errorText().toStdString(); }

    void startAndPress()
    {
        start();
        ASSERT_TRUE(scenario().pressStart()) << scenario().errorText().toStdString();
    }

    bool waitForLog(const char *line, int limitMs = EndToEnd::updateLimitMs)
    {
        return pollUntil([&] { return logHas(line); }, limitMs, 20);
    }

    /// Makes interposed calls fail; call it before start().
    void interpose(const char *variable, const QString &value)
    {
        StagedProgram &program = scenario().program;
        program.setVariable(QStringLiteral("LD_PRELOAD"), QStringLiteral(CLOSE_INTERPOSER));
        program.setVariable(QStringLiteral("INTERPOSE_MARK"), mark());
        program.setVariable(QLatin1String(variable), value);
    }
    bool waitForMark()
    {
        return pollUntil([&] { return QFile::exists(mark()); }, EndToEnd::updateLimitMs, 20);
    }

    /// Whether the watchdog may end the program if the machine was paused meanwhile.
    enum class WhenPaused { Fails, MayEndByWatchdog };

    /// Closes the window as a window manager does, and expects that the program ends without a question.
    void closeAndExpectExit(const char *watchdogReason = nullptr, WhenPaused whenPaused = WhenPaused::Fails)
    {
        m_sinceClose.restart();
        ASSERT_TRUE(scenario().probe.close(background)) << scenario().probe.errorText().toStdString();
        expectExit(watchdogReason, whenPaused);
    }

    void closeAndExpectQuestion()
    {
        ASSERT_TRUE(scenario().probe.close(background)) << scenario().probe.errorText().toStdString();
        ASSERT_TRUE(scenario().probe.waitForWindow(question)) << scenario().probe.errorText().toStdString();
    }

    void answerAndExpectExit()
    {
        m_sinceClose.restart();
        ASSERT_TRUE(scenario().probe.pressDialogButton(QStringLiteral("Close")));
        expectExit();
    }

    /// `watchdogReason` is the reason that the program prints if its watchdog had to end it without cleaning
    /// up.
    void expectExit(const char *watchdogReason = nullptr, WhenPaused whenPaused = WhenPaused::Fails)
    {
        UpdateScenario &s = scenario();
        const std::optional<int> exitCode = s.bus.waitForExit();
        const qint64 tookMs = m_sinceClose.elapsed();
        std::cout << "[ CLOSING  ] " << tookMs << " ms" << std::endl;
        ASSERT_TRUE(exitCode.has_value()) << (s.bus.programState().running ? "still running" : "crashed");
        EXPECT_EQ(*exitCode, 0);
        EXPECT_LE(tookMs, closeLimitMs);
        EXPECT_TRUE(s.program.runningProcesses().isEmpty());
        const QStringList reasons = s.program.standardError()
                                        .split(QLatin1Char('\n'))
                                        .filter(QStringLiteral("The process is ended by force"));
        m_endedByWatchdog =
            whenPaused == WhenPaused::MayEndByWatchdog && !reasons.isEmpty() && m_sinceClose.pausedMs() > 0;
        if (m_endedByWatchdog) {
            std::cout << "[ PAUSED   ] The machine was paused for " << m_sinceClose.pausedMs()
                      << " ms, and the watchdog ended the program." << std::endl;
            return;
        }
        EXPECT_EQ(reasons.join(QLatin1Char('\n')),
                  watchdogReason
                      ? QLatin1String("The process is ended by force: ") + QLatin1String(watchdogReason)
                      : QString());
        expectNoComplaint();
    }

    bool endedByWatchdogAfterPause() const { return m_endedByWatchdog; }

    /// Expects that Qt and the sanitizers did not report a wrong order of destruction.
    void expectNoComplaint()
    {
        static const QRegularExpression complaint(
            QStringLiteral("Destroyed while|Cannot |killTimer|another thread|different thread|"
                           "pure virtual|Sanitizer|runtime error"));
        const QStringList lines = scenario().program.standardError().split(QLatin1Char('\n'));
        EXPECT_EQ(lines.filter(complaint).join(QLatin1Char('\n')), QString());
    }

private:
    QString mark() { return scenario().program.temporaryFolder() + QStringLiteral("/interposed"); }

    RunningTimer m_sinceClose;
    bool m_endedByWatchdog = false;
};
