#include "tests/endtoend/CloseTest.h"

#include "harness/session/ModelOnBus.h"

namespace {

using namespace EndToEnd;

const QString manifestFault = QStringLiteral("%1:path=*firmware-version*");
const QString imageFault = QStringLiteral("%1:path=*.img");

/// Closing the window while the program waits for the server. The worker's last line shows that all its
/// messages were delivered.
class CloseDuringFetchTest : public CloseTest
{
protected:
    void startWithFault(const QString &fault)
    {
        scenario().serverFaults = QStringList{fault};
        startAndPress();
    }
};

TEST_F(CloseDuringFetchTest, WhileTheChooserFetchesFromAServerThatNeverAnswersNoUpdateIsBegun)
{
    startWithFault(manifestFault.arg(QStringLiteral("stall")));
    ASSERT_TRUE(scenario().probe.waitForEnabled(startButton, false));
    closeAndExpectExit();
    EXPECT_TRUE(scenario().program.updateLogLines().filter(QStringLiteral("usb tmpPath: ")).isEmpty());
}

TEST_F(CloseDuringFetchTest, WhileTheChooserIsOpen)
{
    UpdateScenario &s = scenario();
    s.devices = {ModelOnBus::bootloader(s.model())};
    start();
    ASSERT_TRUE(s.probe.waitForWholeText(connection, QStringLiteral("FindBootloader")));
    ASSERT_TRUE(s.probe.click(startButton));
    ASSERT_TRUE(s.probe.waitForWindow(QStringLiteral("选择你的设备")));
    closeAndExpectExit();
    EXPECT_TRUE(logHas("ChoseDev is null，return"));
}

TEST_F(CloseDuringFetchTest, WhileTheManifestIsAwaited)
{
    startWithFault(manifestFault.arg(QStringLiteral("stall")) + QStringLiteral(",nth=2"));
    ASSERT_TRUE(waitForLog("try to download dev json..."));
    closeAndExpectExit();
    EXPECT_TRUE(logHas(closedEarly));
}

TEST_F(CloseDuringFetchTest, WhileTheSizeOfTheImageIsAwaited)
{
    startWithFault(imageFault.arg(QStringLiteral("stall")));
    ASSERT_TRUE(waitForLog("Wait Servier Return File Size..."));
    closeAndExpectExit();
    EXPECT_TRUE(logHas(closedEarly));
}

TEST_F(CloseDuringFetchTest, WhileTheImageArrivesSlowly)
{
    startWithFault(imageFault.arg(QStringLiteral("slow-drip")) + QStringLiteral(",nth=2,bytes=100,ms=20"));
    ASSERT_TRUE(waitForLog("Begin Download now..."));
    ASSERT_TRUE(scenario().probe.waitForText(title, QStringLiteral("Downloading")));
    closeAndExpectExit();
    EXPECT_TRUE(logHas(closedEarly));
}

TEST_F(CloseDuringFetchTest, WhileASegmentWaitsForItsNextTry)
{
    startWithFault(imageFault.arg(QStringLiteral("503")) + QStringLiteral(",range=3"));
    ASSERT_TRUE(waitForLog("Begin Download now..."));
    ASSERT_TRUE(scenario().probe.waitForText(title, QStringLiteral("Downloading")));
    closeAndExpectExit();
    EXPECT_TRUE(logHas(closedEarly));
}

TEST_F(CloseDuringFetchTest, WhenOneSegmentHasGivenUpForGood)
{
    startWithFault(imageFault.arg(QStringLiteral("503")) + QStringLiteral(",range=3"));
    const auto hasGivenUp = [&] {
        return scenario().program.updateLog().contains(QStringLiteral(" gave up after "));
    };
    ASSERT_TRUE(pollUntil(hasGivenUp, updateLimitMs, 50));
    closeAndExpectExit();
    EXPECT_TRUE(logHas(closedEarly));
}

TEST_F(CloseDuringFetchTest, WhileANameLookupHangsInsideQt)
{
    UpdateScenario &s = scenario();
    const QString host = QStringLiteral("never-found.invalid");
    s.firmware.setField(s.model(), QStringLiteral("fileURL"),
                        QStringLiteral("http://%1/DevMaa.img").arg(host));
    interpose("INTERPOSE_HOST", host);
    startAndPress();
    ASSERT_TRUE(waitForMark());
    closeAndExpectExit("something cannot be interrupted.");
    EXPECT_TRUE(logHas(closedEarly));
}

} // namespace
