#include "tests/support/ProcessGone.h"
#include "tests/support/RecordedDebugStream.h"
#include "tests/update/FlasherTest.h"

#include <QElapsedTimer>

namespace {

class FlasherRunTest : public FlasherTest
{
protected:
    /// Runs a flasher that prints `second` only after `first` was read.
    int runInTwoReads(const QByteArray &first, const QByteArray &second)
    {
        m_clock.whileWatching = [this] {
            if (!m_reporter.logLines().isEmpty())
                m_tools.letGoOn();
        };
        return runUsb(Told::print(first) + m_tools.pause() + Told::print(second));
    }
};

TEST_F(FlasherRunTest, TheOsMarkerAndThenASuccessLineShow48And100)
{
    EXPECT_EQ(runInTwoReads("Upgrade fwc: image.target.os\n", "Burn image successfully!\n"), BurnSucceeded);
    EXPECT_EQ(m_reporter.progress(), (QStringList{QStringLiteral("48"), QStringLiteral("100")}));
    EXPECT_EQ(m_picture.levels, (QList<double>{0.0, 48.0, 100.0, 100.0}));
    EXPECT_GT(m_picture.repaints, 2);
}

TEST_F(FlasherRunTest, ASuccessLineAndAMarkerInOneChunkEndWithTheMarkersValue)
{
    EXPECT_EQ(runUsb(Told::print("Upgrade fwc: image.target.os\nBurn image successfully!\n")), BurnSucceeded);
    EXPECT_EQ(m_reporter.progress(), (QStringList{QStringLiteral("100"), QStringLiteral("48")}));
    EXPECT_EQ(m_picture.levels, (QList<double>{0.0, 100.0, 48.0, 100.0}));
}

TEST_F(FlasherRunTest, TheImagePathIsOneArgumentWhateverItHolds)
{
    runUsb(Told::exitWith(0));
    EXPECT_EQ(m_tools.runs(), QStringList{QStringLiteral("usb|image|/srv/an image.img")});
}

TEST_F(FlasherRunTest, AnExitWithoutOutputIsResult1)
{
    EXPECT_EQ(runUsb(Told::exitWith(0)), BurnWithoutSuccessLine);
    EXPECT_TRUE(m_reporter.events().isEmpty());
    EXPECT_EQ(m_picture.levels, QList<double>{0.0});
}

TEST_F(FlasherRunTest, AChunkWithBurnButWithoutSuccessfullyChangesNothingButTheLog)
{
    const RecordedDebugStream debug;
    EXPECT_EQ(runUsb(Told::print("Burn image 12 %\n")), BurnWithoutSuccessLine);
    EXPECT_EQ(m_reporter.events(), QStringList{QStringLiteral("log Burn image 12 %\n")});
    EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("Standard Output: Burn image 12 %\n")});
}

TEST_F(FlasherRunTest, TheExitCodeDoesNotMatter)
{
    EXPECT_EQ(runUsb(Told::print("Burn image successfully!\n") + Told::exitWith(9)), BurnSucceeded);
}

TEST_F(FlasherRunTest, AnUnreachableDeviceIsResultMinus3WithoutProgress)
{
    EXPECT_EQ(runUsb(Told::print("Open upg device failed\n")), BurnDeviceNotReachable);
    EXPECT_TRUE(m_reporter.progress().isEmpty());
}

TEST_F(FlasherRunTest, StandardErrorIsLoggedWithItsPrefixAndDecidesNothing)
{
    const RecordedDebugStream debug;
    EXPECT_EQ(runUsb(Told::printError("Burn image successfully!\n")), BurnWithoutSuccessLine);
    EXPECT_EQ(m_reporter.events(),
              QStringList{QStringLiteral("log !!!ERRORMESSAGE!!!: Burn image successfully!\n")});
    EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("Standard Error: Burn image successfully!\n")});
}

TEST_F(FlasherRunTest, GarbageAndZeroBytesBeforeAMarkerHideNothing)
{
    EXPECT_EQ(runUsb(Told::print(QByteArrayLiteral("a\0\xff Upgrade fwc: image.target.env\n"))),
              BurnWithoutSuccessLine);
    EXPECT_EQ(m_reporter.progress(), QStringList{QStringLiteral("32")});
    EXPECT_TRUE(m_reporter.logLines().value(0).endsWith(QStringLiteral("image.target.env\n")));
}

TEST_F(FlasherRunTest, ASuccessLineSplitOverTwoReadsIsASuccessWithThe100)
{
    EXPECT_EQ(runInTwoReads("Burn image succ", "essfully!"), BurnSucceeded);
    EXPECT_EQ(m_reporter.progress(), QStringList{QStringLiteral("100")});
    EXPECT_EQ(m_picture.levels, (QList<double>{0.0, 100.0}));
}

TEST_F(FlasherRunTest, AFlasherThatCannotBeStartedIsMinus1WithOneLogLine)
{
    const RecordedDebugStream debug;
    EXPECT_EQ(m_flasher.runFlasher(m_paths.usbFlasher, m_image), BurnNotStarted);
    ASSERT_EQ(m_reporter.events().size(), 1);
    EXPECT_TRUE(m_reporter.logLines().first().contains(m_paths.usbFlasher));
    EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("Failed to start process!")});
    EXPECT_FALSE(m_state.isFlashing());
}

TEST_F(FlasherRunTest, TheStateSaysFlashingOnlyWhileTheChildRuns)
{
    bool wasFlashing = false;
    m_clock.whileWatching = [&] {
        wasFlashing = m_state.isFlashing();
    };
    EXPECT_FALSE(m_state.isFlashing());
    runUsb(Told::sleepMs(100));
    EXPECT_TRUE(wasFlashing);
    EXPECT_FALSE(m_state.isFlashing());
}

TEST_F(FlasherRunTest, OutputIsReadNoFasterThanTheLogIsWritten)
{
    class SlowReporter : public RecordingReporter
    {
    public:
        bool isCatchingUp() const override { return behind; }
        bool behind = true;
    };
    SlowReporter reporter;
    int watched = 0;
    m_clock.whileWatching = [&] {
        if (++watched < 200)
            EXPECT_TRUE(reporter.events().isEmpty());
        else
            reporter.behind = false;
    };
    m_tools.write(QStringLiteral("usb"),
                  Told::print("Upgrade fwc: image.target.os\n") + Told::print("Burn image successfully!\n"));
    Flasher flasher(reporter, m_picture, m_state, m_clock, m_paths);
    EXPECT_EQ(flasher.runFlasher(m_paths.usbFlasher, m_image), BurnSucceeded);
    EXPECT_GE(watched, 200);
    EXPECT_EQ(reporter.progress(), (QStringList{QStringLiteral("100"), QStringLiteral("48")}));
}

TEST_F(FlasherRunTest, LeavingKillsTheChildWithinASecond)
{
    const QString pidFile = m_tools.file(QStringLiteral("pid"));
    qint64 child = 0;
    QElapsedTimer sinceLeaving;
    m_clock.whileWatching = [&] {
        QFile file(pidFile);
        if (child == 0 && file.open(QIODevice::ReadOnly))
            child = file.readAll().trimmed().toLongLong();
        if (child != 0 && !sinceLeaving.isValid()) {
            m_clock.leave();
            sinceLeaving.start();
        }
    };
    EXPECT_EQ(runUsb(Told::noteProcessId(pidFile) + Told::hang()), BurnWithoutSuccessLine);
    EXPECT_LT(sinceLeaving.elapsed(), 1000);
    ASSERT_GT(child, 1);
    EXPECT_TRUE(processIsGone(child));
    EXPECT_FALSE(m_state.isFlashing());
}

} // namespace
