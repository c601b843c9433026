#pragma once

#include "harness/process/Polling.h"
#include "tests/endtoend/EndToEnd.h"

#include <QRegularExpression>

/// Closes the window in some state of the program, and checks that this ends all of it in time.
class LeavingTest : public EndToEndTest
{
protected:
    const QString background = QStringLiteral("backgroundWidget");
    const QString question = QStringLiteral("leaveQuestion");
    /// The worker's parting line: that it is there shows that what it said last was delivered.
    const char *const closedEarly = "The program was closed before the update had ended.";

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    // The sanitizer looks for leaks after the program has ended its own work.
    static constexpr int leaveLimitMs = 15000;
#else
    static constexpr int leaveLimitMs = 2000;
#endif

    void start()
    {
        ASSERT_TRUE(scenario().start()) << scenario().errorText().toStdString();
    }

    void startAndPress()
    {
        start();
        ASSERT_TRUE(scenario().pressStart()) << scenario().errorText().toStdString();
    }

    bool waitForLog(const char *line, int limitMs = EndToEnd::updateLimitMs)
    {
        return pollUntil([&] { return logHas(line); }, limitMs, 20);
    }

    /// What interposed calls do wrong; to be called before start().
    void interpose(const char *variable, const QString &value)
    {
        StagedProgram &program = scenario().program;
        program.setVariable(QStringLiteral("LD_PRELOAD"), QStringLiteral(LEAVING_INTERPOSER));
        program.setVariable(QStringLiteral("INTERPOSE_MARK"), mark());
        program.setVariable(QLatin1String(variable), value);
    }
    bool waitForMark()
    {
        return pollUntil([&] { return QFile::exists(mark()); }, EndToEnd::updateLimitMs, 20);
    }

    /// Whether the program may leave by its last resort when the machine stands still meanwhile.
    enum class WhenPaused { Fails, MayLeaveAtOnce };

    /// The close of the window manager, and the program's end, without a question.
    void closeAndExpectGone(const char *lastResort = nullptr, WhenPaused whenPaused = WhenPaused::Fails)
    {
        m_sinceClose.restart();
        ASSERT_TRUE(scenario().probe.close(background)) << scenario().probe.errorText().toStdString();
        expectGone(lastResort, whenPaused);
    }

    void closeAndExpectQuestion()
    {
        ASSERT_TRUE(scenario().probe.close(background)) << scenario().probe.errorText().toStdString();
        ASSERT_TRUE(scenario().probe.waitForWindow(question)) << scenario().probe.errorText().toStdString();
    }

    void answerAndExpectGone()
    {
        m_sinceClose.restart();
        ASSERT_TRUE(scenario().probe.pressDialogButton(QStringLiteral("Close")));
        expectGone();
    }

    /// `lastResort` is the reason that the program gives when it had to leave without cleaning up.
    void expectGone(const char *lastResort = nullptr, WhenPaused whenPaused = WhenPaused::Fails)
    {
        UpdateScenario &s = scenario();
        const std::optional<int> exitCode = s.bus.waitForExit();
        const qint64 tookMs = m_sinceClose.elapsed();
        std::cout << "[ LEAVING  ] " << tookMs << " ms" << std::endl;
        ASSERT_TRUE(exitCode.has_value()) << (s.bus.programState().running ? "still running" : "crashed");
        EXPECT_EQ(*exitCode, 0);
        EXPECT_LE(tookMs, leaveLimitMs);
        EXPECT_TRUE(s.program.runningProcesses().isEmpty());
        const QStringList reasons =
            s.program.standardError().split(QLatin1Char('\n')).filter(QStringLiteral("Leaving at once"));
        m_leftAtOnceAfterPause =
            whenPaused == WhenPaused::MayLeaveAtOnce && !reasons.isEmpty() && m_sinceClose.pausedMs() > 0;
        if (m_leftAtOnceAfterPause) {
            std::cout << "[ PAUSED   ] The machine stood still for " << m_sinceClose.pausedMs()
                      << " ms, and the program left by its last resort." << std::endl;
            return;
        }
        EXPECT_EQ(reasons.join(QLatin1Char('\n')),
                  lastResort ? QLatin1String("Leaving at once: ") + QLatin1String(lastResort) : QString());
        expectNoComplaint();
    }

    bool leftAtOnceAfterPause() const
    {
        return m_leftAtOnceAfterPause;
    }

    /// What Qt and sanitizers say of a wrong order of destruction.
    void expectNoComplaint()
    {
        static const QRegularExpression complaint(
            QStringLiteral("Destroyed while|Cannot |killTimer|another thread|different thread|"
                           "pure virtual|Sanitizer|runtime error"));
        const QStringList lines = scenario().program.standardError().split(QLatin1Char('\n'));
        EXPECT_EQ(lines.filter(complaint).join(QLatin1Char('\n')), QString());
    }

private:
    QString mark()
    {
        return scenario().program.temporaryFolder() + QStringLiteral("/interposed");
    }

    RunningTimer m_sinceClose;
    bool m_leftAtOnceAfterPause = false;
};
