#include "simulator/files/WholeFile.h"
#include "simulator/time/RunningTime.h"
#include "tests/common/ProcessGone.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/update/FlasherTest.h"

#include <optional>

namespace {

class FlasherRunTest : public FlasherTest
{
protected:
    /// Runs a flasher that prints `second` only after `first` has been read.
    int runInTwoReads(const QByteArray &first, const QByteArray &second)
    {
        m_clock.whileWatching = [this] {
            if (!m_reporter.logLines().isEmpty())
                m_tools.letGoOn();
        };
        return runUsb(ToolStep::print(first) + m_tools.pause() + ToolStep::print(second));
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
    EXPECT_EQ(runUsb(ToolStep::print("Upgrade fwc: image.target.os\nBurn image successfully!\n")),
              BurnSucceeded);
    EXPECT_EQ(m_reporter.progress(), (QStringList{QStringLiteral("100"), QStringLiteral("48")}));
    EXPECT_EQ(m_picture.levels, (QList<double>{0.0, 100.0, 48.0, 100.0}));
}

TEST_F(FlasherRunTest, TheImagePathIsOneArgumentWhateverItContains)
{
    runUsb(ToolStep::exitWith(0));
    EXPECT_EQ(m_tools.runs(), QStringList{QStringLiteral("usb|image|/srv/an image.img")});
}

TEST_F(FlasherRunTest, AnExitWithoutOutputIsResult1)
{
    EXPECT_EQ(runUsb(ToolStep::exitWith(0)), BurnWithoutSuccessLine);
    EXPECT_TRUE(m_reporter.events().isEmpty());
    EXPECT_EQ(m_picture.levels, QList<double>{0.0});
}

TEST_F(FlasherRunTest, AChunkWithBurnButWithoutSuccessfullyChangesNothingButTheLog)
{
    const RecordedDebugStream debug;
    EXPECT_EQ(runUsb(ToolStep::print("Burn image 12 %\n")), BurnWithoutSuccessLine);
    EXPECT_EQ(m_reporter.events(), QStringList{QStringLiteral("log Burn image 12 %\n")});
    EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("Standard Output: Burn image 12 %\n")});
}

TEST_F(FlasherRunTest, TheExitCodeDoesNotMatter)
{
    EXPECT_EQ(runUsb(ToolStep::print("Burn image successfully!\n") + ToolStep::exitWith(9)), BurnSucceeded);
}

TEST_F(FlasherRunTest, AnUnreachableDeviceIsResultMinus3WithoutProgress)
{
    EXPECT_EQ(runUsb(ToolStep::print("Open upg device failed\n")), BurnDeviceNotReachable);
    EXPECT_TRUE(m_reporter.progress().isEmpty());
}

TEST_F(FlasherRunTest, StandardErrorIsLoggedWithItsPrefixAndDoesNotAffectTheResult)
{
    const RecordedDebugStream debug;
    EXPECT_EQ(runUsb(ToolStep::printError("Burn image successfully!\n")), BurnWithoutSuccessLine);
    EXPECT_EQ(m_reporter.events(),
              QStringList{QStringLiteral("log !!!ERRORMESSAGE!!!: Burn image successfully!\n")});
    EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("Standard Error: Burn image successfully!\n")});
}

TEST_F(FlasherRunTest, GarbageAndZeroBytesBeforeAMarkerDoNotHideIt)
{
    EXPECT_EQ(runUsb(ToolStep::print(QByteArrayLiteral("a\0\xff Upgrade fwc: image.target.env\n"))),
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

TEST_F(FlasherRunTest, AnUnreachableDeviceSplitOverTwoReadsIsStillResultMinus3)
{
    EXPECT_EQ(runInTwoReads("Open upg dev", "ice failed\n"), BurnDeviceNotReachable);
    EXPECT_TRUE(m_reporter.progress().isEmpty());
    EXPECT_EQ(m_picture.levels, QList<double>{0.0});
}

TEST_F(FlasherRunTest, TwoLinesInTwoReadsAreNoSuccess)
{
    EXPECT_EQ(runInTwoReads("Burn image\n", "Erased successfully!\n"), BurnWithoutSuccessLine);
    EXPECT_TRUE(m_reporter.progress().isEmpty());
}

TEST_F(FlasherRunTest, TheResultOfAChunkIsNotOverriddenByWholeLines)
{
    // The second read begins in the middle of a line.
    EXPECT_EQ(runInTwoReads("Burn image successfully!\nOpen upg device ", "failed\n"), BurnSucceeded);
}

TEST_F(FlasherRunTest, AFlasherThatCannotBeStartedIsMinus1WithOneLogLine)
{
    const RecordedDebugStream debug;
    EXPECT_EQ(flasher().runFlasher(m_paths.usbFlasher, m_image), BurnNotStarted);
    ASSERT_EQ(m_reporter.events().size(), 1);
    EXPECT_TRUE(m_reporter.logLines().first().contains(m_paths.usbFlasher));
    EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("Failed to start process!")});
}

TEST_F(FlasherRunTest, TheDeviceIsBeingWrittenWhileTheChildRuns)
{
    bool wasWriting = false;
    m_clock.whileWatching = [&] {
        wasWriting = m_session->isWritingDevice();
        m_tools.letGoOn();
    };
    EXPECT_FALSE(m_session->isWritingDevice());
    runUsb(m_tools.pause());
    EXPECT_TRUE(wasWriting);
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
    m_tools.write(QStringLiteral("usb"), ToolStep::print("Upgrade fwc: image.target.os\n") +
                                             ToolStep::print("Burn image successfully!\n"));
    Flasher flasher(reporter, m_picture, *m_session, m_clock, m_paths, {});
    EXPECT_EQ(flasher.runFlasher(m_paths.usbFlasher, m_image), BurnSucceeded);
    EXPECT_GE(watched, 200);
    EXPECT_EQ(reporter.progress(), (QStringList{QStringLiteral("100"), QStringLiteral("48")}));
}

TEST_F(FlasherRunTest, ShuttingDownKillsTheFlasherWithinASecond)
{
    const QString pidFile = m_tools.file(QStringLiteral("pid"));
    qint64 child = 0;
    std::optional<RunningTimer> sinceShutdown;
    m_clock.whileWatching = [&] {
        if (child == 0)
            child = WholeFile::read(pidFile).trimmed().toLongLong();
        if (child != 0 && !sinceShutdown) {
            m_clock.shutDown();
            sinceShutdown.emplace();
        }
    };
    EXPECT_EQ(runUsb(ToolStep::noteProcessId(pidFile) + ToolStep::hang()), BurnWithoutSuccessLine);
    ASSERT_TRUE(sinceShutdown);
    EXPECT_LT(sinceShutdown->elapsed(), 1000);
    ASSERT_GT(child, 1);
    EXPECT_TRUE(processIsGone(child));
}

} // namespace
