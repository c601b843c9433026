#pragma once

#include "simulator/bench/UpdateScenario.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

/// Tests on the real, unmodified program. Titles are those of the English table.
namespace EndToEnd {

const QString title = QStringLiteral("stateTitleLabel");
const QString startButton = QStringLiteral("startButton");
const QString deviceModel = QStringLiteral("deviceModelLabel");
const QString connection = QStringLiteral("statusLabel");
const QString usbFlasher = QStringLiteral("upgcmd.exe");
const QString hidFlasher = QStringLiteral("upgcmdHid.exe");

/// The system of the program under test; each test program has its own.
std::unique_ptr<TargetSystem> programSystem();

/// Longer than an update takes on a busy machine.
constexpr int updateLimitMs = 60000;

/// One step of a stand-in's script.
inline QJsonObject step(const char *name, const QJsonValue &value)
{
    return {{QLatin1String(name), value}};
}

inline QJsonDocument script(const QList<QJsonArray> &runs)
{
    QJsonArray list;
    for (const QJsonArray &run : runs)
        list.append(run);
    return QJsonDocument(QJsonObject{{QStringLiteral("runs"), list}});
}

/// A run of a flasher that cannot reach the device.
inline QJsonArray unreachable()
{
    return {step("print", QStringLiteral("Open upg device failed\n")), step("exit", 1)};
}

/// What the tool was started with, run by run.
inline QList<QStringList> argumentsOf(const StagedProgram &program, const QString &tool)
{
    QList<QStringList> all;
    for (const StandinRun &run : program.runs(tool))
        all.append(run.arguments);
    return all;
}

} // namespace EndToEnd

/// Shows the end of a failed case: what the user's log and the debug stream said.
class EndToEndTest : public testing::Test
{
protected:
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

    /// Starts and runs one update until the controls are back; then the title.
    QString update()
    {
        UpdateScenario &s = *m_scenario;
        if (!s.start() || !s.pressStart())
            return s.errorText();
        if (!s.probe.waitForEnabled(EndToEnd::startButton, false, 5000))
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

    /// The run ended before the device was touched, and the controls came back.
    void expectUntouchedDevice()
    {
        UpdateScenario &s = scenario();
        EXPECT_TRUE(s.bus.device(s.model()).value(QLatin1String("reports")).toArray().isEmpty());
        EXPECT_TRUE(s.program.runs(EndToEnd::usbFlasher).isEmpty());
        EXPECT_TRUE(s.probe.isEnabled(EndToEnd::startButton));
        EXPECT_TRUE(s.probe.waitForText(EndToEnd::connection, QStringLiteral("Device Detected"), 5000));
    }

    bool logHas(const char *line) const
    {
        return m_scenario->program.updateLogLines().contains(QString::fromUtf8(line));
    }

    std::unique_ptr<UpdateScenario> m_scenario;
};
