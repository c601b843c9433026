#pragma once

#include "harness/UpdateScenario.h"
#include "harness/process/Polling.h"
#include "simulator/standin/StandinScript.h"
#include "tests/common/AnotherAttempt.h"

#include <gtest/gtest.h>

/// Tests on the real, unmodified program. Titles are those of the English table.
namespace EndToEnd {

const QString title = QStringLiteral("stateTitleLabel");
const QString startButton = QStringLiteral("startButton");
const QString deviceModel = QStringLiteral("deviceModelLabel");
const QString connection = QStringLiteral("statusLabel");
/// Texts of `connection`.
const QString detected = QStringLiteral("Device Detected");
const QString nothing = QStringLiteral("Device not detected");
/// Texts of `title`.
const QString upgradeSuccessful = QStringLiteral("CurrentStatus: Upgrade Successful");
const QString upgradeFailed = QStringLiteral("CurrentStatus: Upgrade Failed!");
const QString md5Failed = QStringLiteral("CurrentStatus: MD5 verification failed.");
const QString usbFlasher = QStringLiteral("upgcmd.exe");
const QString hidFlasher = QStringLiteral("upgcmdHid.exe");

/// The system of the program under test; each test program has its own.
std::unique_ptr<TargetSystem> programSystem();

/// Longer than an update takes on a busy machine.
constexpr int updateLimitMs = 60000;

using StandinScript::script;
using StandinScript::scriptFor;
using StandinScript::step;

/// A run of a flasher that cannot reach the device.
inline QJsonArray unreachable()
{
    return {step("print", QStringLiteral("Open upg device failed\n")), step("exit", 1)};
}

/// Returns the arguments of each run of the tool.
inline QList<QStringList> argumentsOf(const StagedProgram &program, const QString &tool)
{
    QList<QStringList> all;
    for (const StandinRun &run : program.runs(tool))
        all.append(run.arguments);
    return all;
}

} // namespace EndToEnd

/// Prints the end of the user's log and of the debug stream if a case fails. The program is the real one and
/// has its real time limits: two seconds for shutting down, one for the last taskkill.
class EndToEndTest : public testing::Test
{
protected:
    EndToEndTest() { dependsOnRealTime("the time limits of the program itself"); }

    void TearDown() override
    {
        if (HasFailure() && m_scenario) {
            ADD_FAILURE() << "UPDLog.txt:\n"
                          << m_scenario->program.updateLog().toStdString()
                          << "\nerror: " << m_scenario->errorText().toStdString() << '\n'
                          << m_scenario->probe.errorText().toStdString() << "\nstandard error:\n"
                          << m_scenario->program.standardError().right(4000).toStdString();
        }
    }

    UpdateScenario &scenario(const char *model = "DevMaa")
    {
        if (!m_scenario)
            m_scenario =
                std::make_unique<UpdateScenario>(QString::fromLatin1(model), EndToEnd::programSystem());
        return *m_scenario;
    }

    /// Runs one update until the controls are enabled again and returns the title.
    QString update()
    {
        UpdateScenario &s = *m_scenario;
        if (!s.start() || !s.pressStart())
            return s.errorText();
        if (!s.probe.waitForEnabled(EndToEnd::startButton, false))
            return s.probe.errorText();
        return titleWhenIdle();
    }

    QString titleWhenIdle()
    {
        UpdateScenario &s = *m_scenario;
        if (!s.probe.waitForEnabled(EndToEnd::startButton, true, EndToEnd::updateLimitMs))
            return s.probe.errorText();
        return s.probe.text(EndToEnd::title);
    }

    /// Waits until the device has restarted after its update: until then it takes no update-mode report.
    bool waitUntilRestarted()
    {
        UpdateScenario &s = scenario();
        const auto isBack = [&s] {
            return s.bus.device(s.model()).value(QLatin1String("state")).toString() ==
                   QLatin1String("application");
        };
        return pollUntil(isBack) && s.probe.waitForWholeText(EndToEnd::connection, EndToEnd::detected);
    }

    /// Expects that the run ended before the device was changed, and that the controls are enabled again.
    void expectUntouchedDevice()
    {
        UpdateScenario &s = scenario();
        EXPECT_TRUE(s.bus.device(s.model()).value(QLatin1String("reports")).toArray().isEmpty());
        EXPECT_TRUE(s.program.runs(EndToEnd::usbFlasher).isEmpty());
        EXPECT_TRUE(s.probe.isEnabled(EndToEnd::startButton));
        EXPECT_TRUE(s.probe.waitForWholeText(EndToEnd::connection, QStringLiteral("Device Detected")));
    }

    bool logHas(const char *line) const
    {
        return m_scenario->program.updateLogLines().contains(QString::fromUtf8(line));
    }

    std::unique_ptr<UpdateScenario> m_scenario;
};
