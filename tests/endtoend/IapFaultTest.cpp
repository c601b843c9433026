#include "tests/endtoend/IapTest.h"

namespace {

using namespace EndToEnd;

/// Programmers that are missing, fail, or do not end.
using IapFaultTest = IapTest;

TEST_F(IapFaultTest, WithoutAProgrammerStartLogsNothingAndTheStartButtonStaysOff)
{
    UpdateScenario &s = iapScenario();
    ASSERT_TRUE(QFile::remove(s.program.applicationFolder() + QLatin1Char('/') + programmer));
    start();
    ASSERT_TRUE(s.probe.waitForWholeText(connection, QStringLiteral("IAP Device Detected")));
    EXPECT_TRUE(logHas("IAP Process not exists.!"));
    ASSERT_TRUE(s.pressStart());
    ASSERT_TRUE(waitForLog("StopCheckConnectTimer."));
    ASSERT_TRUE(s.bus.unplug(s.model()));
    EXPECT_FALSE(s.probe.waitForEnabled(startButton, true, 2500));
    EXPECT_EQ(s.probe.text(connection), QStringLiteral("IAP Device Detected")) << "the monitor runs";
    EXPECT_TRUE(s.probe.isEnabled(download));
    EXPECT_FALSE(logHas("StartCheckConnectTimer."));
    EXPECT_EQ(linesBeginning(asked), 0);
    closeAndExpectExit();
}

TEST_F(IapFaultTest, ADeviceThatHasGoneFailsAndTheControlsComeBack)
{
    UpdateScenario &s = iapScenario();
    s.withServer = false;
    startAndDetect();
    chooseFile(QStringLiteral("mine.bin"), "too late");
    s.program.setScript(
        programmer, scriptFor(QStringLiteral("Start"),
                              {{step("print", QStringLiteral("NO usb IAP Device!\n")), step("hang", true)}}));
    ASSERT_TRUE(s.pressStart());
    EXPECT_EQ(titleOfRun(), upgradeFailed);
    EXPECT_TRUE(s.burned().isEmpty());
    EXPECT_TRUE(s.program.runningProcesses().size() == 1);
}

TEST_F(IapFaultTest, ProgressInSplitChunksASilenceACrashAndAnExitCodeAllGiveTheControlsBack)
{
    UpdateScenario &s =
        iapScenario({{QJsonObject{{QLatin1String("print"), QStringLiteral("SetProgress: 42\n")},
                                  {QLatin1String("splitAt"), 14},
                                  {QLatin1String("pauseMs"), 300}},
                      step("exit", 0)},
                     {step("sleepMs", 200)},
                     {step("print", QStringLiteral("SetProgress: 5\n")), step("crash", true)},
                     {step("print", QStringLiteral("SetProgress: 6\n")), step("exit", 3)}});
    s.withServer = false;
    startAndDetect();
    chooseFile(QStringLiteral("mine.bin"), "bytes");
    for (int runs = 1; runs <= 4; ++runs) {
        ASSERT_TRUE(s.pressStart());
        EXPECT_EQ(titleOfRun(runs), runs == 2 ? QStringLiteral("Current Status: Attempting to Upgrade...")
                                              : QStringLiteral("Current Status: IAP Progress"));
    }
    // The first read ends after the 4, and each chunk is handled as it arrives.
    EXPECT_TRUE(logHas("SetProgress: 4"));
    EXPECT_TRUE(logHas("2"));
    EXPECT_TRUE(logHas("IAP finished, exitCode=0"));
    EXPECT_TRUE(logHas("IAP finished, exitCode=3"));
    EXPECT_TRUE(s.burned().isEmpty());
}

TEST_F(IapFaultTest, AProgrammerThatVerifiesAfter100AndIgnoresItsTerminationIsKilledInTheEnd)
{
    UpdateScenario &s =
        iapScenario({{step("deaf", true), step("program", true),
                      step("print", QStringLiteral("SetProgress: 100\n")), step("hang", true)}});
    startAndPressStart();
    ASSERT_TRUE(s.probe.waitForText(title, upgradeSuccessful, updateLimitMs));
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(s.probe.isEnabled(startButton));
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    EXPECT_GE(timer.elapsed(), 8000);
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_EQ(s.program.runningProcesses().size(), 1);
}

} // namespace
