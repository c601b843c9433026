#include "tests/cli/CliTest.h"

#include <QThread>

namespace {

using namespace CliCases;

const QString goOn = QStringLiteral("go-on");

/// Interrupts the program at different moments with each signal that asks it to end.
class CliInterruptionTest : public CliTest, public testing::WithParamInterface<int>
{
protected:
    /// Makes the flasher write until the test lets it continue.
    void startAndWaitUntilItWrites()
    {
        CliScenario &s = scenario();
        s.program.setScript(usbFlasher,
                            scriptFor(QStringLiteral("image"),
                                      {{step("print", QStringLiteral("Upgrade fwc: image.target.spl\n")),
                                        step("awaitFile", goOn), step("burn"), step("success")}}));
        start({update});
        ASSERT_TRUE(s.waitForEvent({{QStringLiteral("event"), QStringLiteral("progress")},
                                    {QStringLiteral("percent"), 16},
                                    {QStringLiteral("bytes"), QJsonValue()}}));
    }
    void letItGoOn() { ASSERT_TRUE(WholeFile::write(goOnFile())); }
    QString goOnFile() { return scenario().program.applicationFolder() + QLatin1Char('/') + goOn; }
};

TEST_P(CliInterruptionTest, AnInterruptedFetchEndsAtOnce)
{
    CliScenario &s = scenario();
    s.serverFaults = QStringList{QStringLiteral("stall-after:path=*.img,range=5,bytes=50000")};
    start({update});
    ASSERT_TRUE(s.waitForEvent(inStage("fetching")));
    ASSERT_TRUE(pollUntil([&] { return !s.events(QStringLiteral("progress")).isEmpty(); }));
    interrupt(GetParam());
    expectExitAtOnce(130);
    expectResult("cancelled", "fetching", "interrupted", 130);
    expectUntouchedDevice();
}

TEST_P(CliInterruptionTest, AnUpdateThatIsWritingTheDeviceContinuesAndSucceeds)
{
    startAndWaitUntilItWrites();
    interrupt(GetParam());
    EXPECT_TRUE(waitForMessage("the update goes on"));
    EXPECT_TRUE(scenario().bus.programState().running);
    letItGoOn();
    EXPECT_EQ(waitForExit(), 0);
    expectSucceeded("resetting");
    EXPECT_EQ(scenario().burned(), scenario().image());
    EXPECT_TRUE(QFile::remove(goOnFile()));
}

TEST_P(CliInterruptionTest, ASecondInterruptionEndsTheFlasherAndExplainsTheRepair)
{
    dependsOnRealTime("the five seconds for the second request");
    startAndWaitUntilItWrites();
    interrupt(GetParam());
    ASSERT_TRUE(waitForMessage("the update goes on"));
    interrupt(GetParam());
    EXPECT_EQ(waitForExit(), 1);
    expectResult("cancelled", "flashing", "interrupted", 1);
    EXPECT_TRUE(waitForMessage("update it again and name its model with --model"));
    EXPECT_TRUE(pollUntil([&] { return scenario().program.runningProcesses().isEmpty(); }));
    EXPECT_TRUE(scenario().burned().isEmpty());

    // The explained repair works.
    letItGoOn();
    EXPECT_EQ(run({update, QStringLiteral("--model"), scenario().model()}), 0);
    EXPECT_EQ(scenario().burned(), scenario().image());
    EXPECT_TRUE(QFile::remove(goOnFile()));
}

TEST_F(CliInterruptionTest, ASecondInterruptionAfterMoreThanFiveSecondsIsOnlyAnswered)
{
    startAndWaitUntilItWrites();
    interrupt();
    ASSERT_TRUE(waitForMessage("the update goes on"));
    QThread::msleep(5100);
    interrupt();
    EXPECT_TRUE(waitForMessage("the update goes on", 2));
    letItGoOn();
    EXPECT_EQ(waitForExit(), 0);
    expectSucceeded("resetting");
    EXPECT_TRUE(QFile::remove(goOnFile()));
}

std::string nameOfSignal(const testing::TestParamInfo<int> &info)
{
    switch (info.param) {
    case SIGINT:
        return "SIGINT";
    case SIGTERM:
        return "SIGTERM";
    default:
        return "SIGHUP";
    }
}

INSTANTIATE_TEST_SUITE_P(Each, CliInterruptionTest, testing::ValuesIn(endingSignals()), nameOfSignal);

TEST_F(CliInterruptionTest, AnInterruptionWhileWaitingForADeviceEndsTheProgramAtOnce)
{
    CliScenario &s = scenario();
    s.devices[0].insert(QStringLiteral("start"), QStringLiteral("absent"));
    start({update, QStringLiteral("--wait"), QStringLiteral("600")});
    ASSERT_TRUE(waitForMessage("Waiting for a device."));
    interrupt();
    expectExitAtOnce(130);
    expectResult("cancelled", "idle", "interrupted", 130);
}

TEST_F(CliInterruptionTest, AnInterruptionBetweenTwoFlasherRunsEndsTheProgram)
{
    CliScenario &s = scenario();
    s.program.setScript(
        usbFlasher, script({{step("print", QStringLiteral("Open upg device failed\n")), step("exit", 1)}}));
    start({update});
    ASSERT_TRUE(pollUntil([&] { return stages().count(QStringLiteral("entering-bootloader")) >= 2; }));
    interrupt(SIGINT);
    // If the next run has begun meanwhile, the device is being written again.
    EXPECT_TRUE(pollUntil([&] {
        return !s.bus.programState().running ||
               s.program.standardError().contains(QLatin1String("the update goes on"));
    }));
    EXPECT_EQ(waitForExit(), 1);
}

TEST_F(CliInterruptionTest, WhileTheProgrammerWritesOnlyTheSecondInterruptionEndsIt)
{
    CliScenario &s = scenario("DevMdq");
    dependsOnRealTime("the five seconds for the second request");
    s.program.setScript(iapProgrammer,
                        scriptFor(QStringLiteral("Start"),
                                  {{step("print", QStringLiteral("SetProgress: 42\n")), step("hang")}}));
    start({update});
    ASSERT_TRUE(s.waitForEvent(inStage("programming")));
    interrupt(SIGINT);
    ASSERT_TRUE(waitForMessage("the update goes on"));
    interrupt(SIGINT);
    EXPECT_EQ(waitForExit(), 1);
    expectResult("cancelled", "programming", "interrupted", 1);
    EXPECT_TRUE(pollUntil([&] { return s.program.runningProcesses().isEmpty(); }));
}

} // namespace
