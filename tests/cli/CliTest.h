#pragma once

#include "harness/CliScenario.h"
#include "harness/process/Polling.h"
#include "harness/session/ModelOnBus.h"
#include "simulator/files/WholeFile.h"
#include "simulator/standin/StandinScript.h"
#include "simulator/time/RunningTime.h"
#include "tests/cli/EventValidation.h"
#include "tests/common/AnotherAttempt.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonArray>

#include <gtest/gtest.h>

#include <csignal>

namespace CliCases {

/// Returns the system that the program under test runs on; each test program defines this function.
std::unique_ptr<TargetSystem> programSystem();
/// Returns the signals that ask that program to end.
QVector<int> endingSignals();
/// Returns whether a signal may be sent to the process now.
bool canBeSignalled(qint64 programId);
/// Returns the milliseconds in which it has to end after one of them, unless a device is being written.
int exitLimitMs();

using StandinScript::script;
using StandinScript::scriptFor;
using StandinScript::step;

const QString usbFlasher = QStringLiteral("upgcmd.exe");
const QString hidFlasher = QStringLiteral("upgcmdHid.exe");
const QString iapProgrammer = QStringLiteral("IAP_Programmer.exe");
const QString update = QStringLiteral("update");
const QString application = QStringLiteral("application");

/// Returns the fields of the event for this stage.
inline QJsonObject inStage(const char *stage)
{
    return {{QStringLiteral("event"), QStringLiteral("stage")},
            {QStringLiteral("stage"), QLatin1String(stage)}};
}

inline QString sumOf(const QByteArray &bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
}

} // namespace CliCases

/// Runs the real quillmarsh-cli on a simulated bus. After each run with --json it validates every line
/// against the schema, and at the end of the test it expects that no file is left.
class CliTest : public testing::Test
{
protected:
    CliTest() { dependsOnRealTime("the time limits of the program itself"); }

    void TearDown() override
    {
        if (!m_scenario)
            return;
        m_scenario->bus.killProgram();
        if (m_isJson && m_readsOutput)
            expectValidEvents();
        if (m_expectsNoFiles) {
            EXPECT_EQ(m_scenario->filesLeft(), QStringList());
        }
        if (HasFailure())
            ADD_FAILURE() << "standard output:\n"
                          << m_scenario->program.standardOutput().right(6000).toStdString()
                          << "\nstandard error:\n"
                          << m_scenario->program.standardError().right(3000).toStdString()
                          << "\nerror: " << m_scenario->errorText().toStdString();
    }

    CliScenario &scenario(const char *model = "DevMaa", const QString &folderName = QString())
    {
        if (!m_scenario)
            m_scenario = std::make_unique<CliScenario>(QString::fromLatin1(model), CliCases::programSystem(),
                                                       folderName);
        return *m_scenario;
    }

    /// Starts the program with --json.
    void start(const QStringList &arguments)
    {
        if (m_isJson && m_readsOutput)
            expectValidEvents();
        m_isJson = true;
        ASSERT_TRUE(scenario().start(arguments + QStringList{QStringLiteral("--json")}))
            << scenario().errorText().toStdString();
    }
    /// Runs the program with --json to its end and returns its exit code; -1 if it did not end by itself.
    int run(const QStringList &arguments)
    {
        start(arguments);
        return HasFatalFailure() ? -1 : waitForExit();
    }
    /// Runs the program without --json to its end and returns its exit code; -1 if it did not end by itself.
    int runWithTextOutput(const QStringList &arguments)
    {
        m_isJson = false;
        return scenario().run(arguments).value_or(-1);
    }
    /// Sends the signal to the program.
    void interrupt(int number = SIGINT)
    {
        const qint64 id = scenario().bus.programId();
        ASSERT_GT(id, 0);
        ASSERT_TRUE(pollUntil([id] { return CliCases::canBeSignalled(id); }));
        m_sinceSignal.restart();
        ASSERT_EQ(kill(static_cast<pid_t>(id), number), 0);
    }
    /// Expects that the program ends soon after interrupt().
    void expectExitAtOnce(int exitCode)
    {
        EXPECT_EQ(waitForExit(), exitCode);
        EXPECT_LE(m_sinceSignal.elapsed(), CliCases::exitLimitMs());
    }
    /// Waits until the standard error of the program contains the text this many times.
    bool waitForMessage(const char *text, int times = 1)
    {
        return pollUntil(
            [&] { return scenario().program.standardError().count(QLatin1String(text)) >= times; });
    }
    int waitForExit() { return scenario().bus.waitForExit(2 * eventLimitMs).value_or(-1); }

    /// Returns the fields of the last event without "time" and, of a result, without "seconds".
    QJsonObject lastEvent()
    {
        const QList<QJsonObject> events = scenario().events();
        QJsonObject last = events.isEmpty() ? QJsonObject() : events.last();
        last.remove(QStringLiteral("time"));
        last.remove(QStringLiteral("seconds"));
        return last;
    }
    /// Returns the stages that were entered, in order.
    QStringList stages()
    {
        QStringList names;
        for (const QJsonObject &event : scenario().events(QStringLiteral("stage")))
            names.append(event.value(QLatin1String("stage")).toString());
        return names;
    }
    /// Expects that the last event is the only result and has these fields.
    void expectResult(const char *outcome, const char *stage, const char *reason, int exitCode)
    {
        const QJsonObject last = lastEvent();
        EXPECT_EQ(last.value(QLatin1String("event")).toString(), QStringLiteral("result"));
        EXPECT_EQ(last.value(QLatin1String("outcome")).toString(), QLatin1String(outcome));
        EXPECT_EQ(last.value(QLatin1String("stage")).toString(), QLatin1String(stage));
        EXPECT_EQ(last.value(QLatin1String("reason")).toString(), QLatin1String(reason));
        EXPECT_EQ(last.value(QLatin1String("exitCode")).toInt(-1), exitCode);
        EXPECT_EQ(scenario().events(QStringLiteral("result")).size(), 1);
    }
    void expectSucceeded(const char *stage)
    {
        expectResult("succeeded", stage, "none", 0);
        EXPECT_EQ(lastEvent().value(QLatin1String("model")).toString(), scenario().model());
    }
    void expectUntouchedDevice()
    {
        CliScenario &s = scenario();
        const QJsonObject device = s.bus.device(s.model());
        EXPECT_TRUE(device.value(QLatin1String("reports")).toArray().isEmpty());
        EXPECT_EQ(device.value(QLatin1String("burns")).toInt(), 0);
        for (const QString &flasher : {CliCases::usbFlasher, CliCases::hidFlasher})
            EXPECT_TRUE(s.program.runs(flasher).isEmpty());
    }
    QList<QStringList> argumentsOf(const QString &tool)
    {
        QList<QStringList> all;
        for (const StandinRun &run : scenario().program.runs(tool))
            all.append(run.arguments);
        return all;
    }

    /// Tests set these to false if the output goes elsewhere or if they leave files behind intentionally.
    bool m_readsOutput = true;
    bool m_expectsNoFiles = true;
    std::unique_ptr<CliScenario> m_scenario;
    RunningTimer m_sinceSignal;

private:
    void expectValidEvents()
    {
        const QString output = m_scenario->program.standardOutput();
        EXPECT_EQ(EventValidation::problemsIn(output.toUtf8()), QString());
        const QList<QJsonObject> events = m_scenario->events();
        ASSERT_FALSE(events.isEmpty());
        EXPECT_EQ(events.first().value(QLatin1String("event")).toString(), QStringLiteral("hello"));
    }

    bool m_isJson = false;
};
