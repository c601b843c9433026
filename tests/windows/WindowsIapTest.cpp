#include "tests/endtoend/LocalFiles.h"

#include "simulator/bench/Polling.h"

namespace {

using namespace EndToEnd;

const QString programmer = QStringLiteral("IAP_Programmer.exe");

/// A microcontroller, which the maker's programmer writes.
class WindowsIapTest : public EndToEndTest
{
protected:
    /// The programmer's runs that begin with this argument.
    QList<QStringList> runsOf(const char *first)
    {
        QList<QStringList> found;
        for (const QStringList &arguments : argumentsOf(scenario().program, programmer)) {
            if (arguments.value(0) == QLatin1String(first))
                found.append(arguments);
        }
        return found;
    }

    /// Detected and asked for; while the programmer is asked, a start would do nothing.
    void startAndPressStart()
    {
        UpdateScenario &s = scenario("DevMdq");
        ASSERT_TRUE(s.start()) << s.errorText().toStdString();
        ASSERT_TRUE(s.probe.waitForText(connection, QStringLiteral("IAP Device Detected"), updateLimitMs))
            << s.probe.errorText().toStdString();
        ASSERT_TRUE(pollUntil(
            [&] {
                return s.program.updateLogLines().filter(QStringLiteral("IAP RunProcessGetData: ")).size() >=
                       2;
            },
            updateLimitMs, 20));
        ASSERT_TRUE(s.pressStart()) << s.errorText().toStdString();
    }

    bool waitForEnd()
    {
        return pollUntil([&] { return logHas("enable IAPbtnStart_"); }, updateLimitMs, 20) &&
               scenario().probe.waitForEnabled(startButton, true, 5000);
    }
};

TEST_F(WindowsIapTest, AnIapModelIsProgrammedWithTheServersImage)
{
    startAndPressStart();
    UpdateScenario &s = scenario();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(s.probe.text(title), QStringLiteral("Current Status: Upgrade Successful"));
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_TRUE(s.program.runs(usbFlasher).isEmpty());
    ASSERT_EQ(runsOf("Start").size(), 1);
    EXPECT_EQ(runsOf("Start").first().value(10), s.program.nameOf(s.program.temporaryFolder()) +
                                                     QStringLiteral("/QuillmarshV3TmpPath/tmp/dev.bin"));
}

TEST_F(WindowsIapTest, AProgrammerThatHangsIsKilledWhenThePersonLeaves)
{
    // A console program hears of no request to end; the kill has to reach it.
    scenario("DevMdq").program.setScript(
        programmer,
        QJsonDocument(QJsonObject{
            {QLatin1String("Start"),
             script({{step("print", QStringLiteral("SetProgress: 42\n")), step("hang", true)}}).object()}}));
    startAndPressStart();
    UpdateScenario &s = scenario();
    ASSERT_TRUE(
        s.probe.waitForValue(QStringLiteral("progressBar"), QStringLiteral("value"), 42, updateLimitMs))
        << s.probe.errorText().toStdString();
    ASSERT_TRUE(s.probe.close(QStringLiteral("BackgroundWidget")));
    ASSERT_TRUE(s.probe.waitForWindow(QStringLiteral("leaveQuestion"), 5000));
    ASSERT_TRUE(s.probe.pressDialogButton(QStringLiteral("Close")));
    EXPECT_EQ(s.bus.waitForExit(10000), 0);
    EXPECT_TRUE(pollUntil([&] { return s.program.runningProcesses().isEmpty(); }, 2000));
    EXPECT_TRUE(s.burned().isEmpty());
}

} // namespace
