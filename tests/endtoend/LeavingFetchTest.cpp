#include "tests/endtoend/LeavingTest.h"

#include "harness/session/ModelOnBus.h"

namespace {

using namespace EndToEnd;

const QString manifestFault = QStringLiteral("%1:path=*firmware-version*");
const QString imageFault = QStringLiteral("%1:path=*.img");

/// Leaving while the program waits for the server. The worker's parting line shows that what it
/// still had to say was delivered.
class LeavingFetchTest : public LeavingTest
{
protected:
    void startWithFault(const QString &fault)
    {
        scenario().serverFaults = QStringList{fault};
        startAndPress();
    }
};

TEST_F(LeavingFetchTest, WhileTheChooserFetchesFromAServerThatNeverAnswersNoUpdateIsBegun)
{
    startWithFault(manifestFault.arg(QStringLiteral("stall")));
    ASSERT_TRUE(scenario().probe.waitForEnabled(startButton, false));
    closeAndExpectGone();
    EXPECT_TRUE(scenario().program.updateLogLines().filter(QStringLiteral("usb tmpPath: ")).isEmpty());
}

TEST_F(LeavingFetchTest, WhileTheChooserIsOpenAndWaits)
{
    UpdateScenario &s = scenario();
    s.devices = {ModelOnBus::bootloader(s.model())};
    start();
    ASSERT_TRUE(s.probe.waitForWholeText(connection, QStringLiteral("FindBootloader")));
    ASSERT_TRUE(s.probe.click(startButton));
    ASSERT_TRUE(s.probe.waitForWindow(QStringLiteral("选择你的设备")));
    closeAndExpectGone();
    EXPECT_TRUE(logHas("ChoseDev is null，return"));
}

TEST_F(LeavingFetchTest, WhileTheManifestIsWaitedFor)
{
    startWithFault(manifestFault.arg(QStringLiteral("stall")) + QStringLiteral(",nth=2"));
    ASSERT_TRUE(waitForLog("try to download dev json..."));
    closeAndExpectGone();
    EXPECT_TRUE(logHas(closedEarly));
}

TEST_F(LeavingFetchTest, WhileTheSizeOfTheImageIsWaitedFor)
{
    startWithFault(imageFault.arg(QStringLiteral("stall")));
    ASSERT_TRUE(waitForLog("Wait Servier Return File Size..."));
    closeAndExpectGone();
    EXPECT_TRUE(logHas(closedEarly));
}

TEST_F(LeavingFetchTest, WhileTheImageComesDropByDrop)
{
    startWithFault(imageFault.arg(QStringLiteral("slow-drip")) + QStringLiteral(",nth=2,bytes=100,ms=20"));
    ASSERT_TRUE(waitForLog("Begin Download now..."));
    ASSERT_TRUE(scenario().probe.waitForText(title, QStringLiteral("Downloading")));
    closeAndExpectGone();
    EXPECT_TRUE(logHas(closedEarly));
}

TEST_F(LeavingFetchTest, WhileASegmentWaitsForItsNextTry)
{
    startWithFault(imageFault.arg(QStringLiteral("503")) + QStringLiteral(",range=3"));
    ASSERT_TRUE(waitForLog("Begin Download now..."));
    ASSERT_TRUE(scenario().probe.waitForText(title, QStringLiteral("Downloading")));
    closeAndExpectGone();
    EXPECT_TRUE(logHas(closedEarly));
}

TEST_F(LeavingFetchTest, WhenOneSegmentHasGivenUpForGood)
{
    startWithFault(imageFault.arg(QStringLiteral("503")) + QStringLiteral(",range=3"));
    const auto hasGivenUp = [&] {
        return scenario().program.updateLog().contains(QStringLiteral(" gave up after "));
    };
    ASSERT_TRUE(pollUntil(hasGivenUp, updateLimitMs, 50));
    closeAndExpectGone();
    EXPECT_TRUE(logHas(closedEarly));
}

TEST_F(LeavingFetchTest, WhileANameLookupHangsInsideTheToolkit)
{
    UpdateScenario &s = scenario();
    const QString host = QStringLiteral("never-found.invalid");
    s.firmware.setField(s.model(), QStringLiteral("fileURL"),
                        QStringLiteral("http://%1/DevMaa.img").arg(host));
    interpose("INTERPOSE_HOST", host);
    startAndPress();
    ASSERT_TRUE(waitForMark());
    closeAndExpectGone("something cannot be interrupted.");
    EXPECT_TRUE(logHas(closedEarly));
}

} // namespace
