#include "tests/support/RecordedDebugStream.h"
#include "tests/update/FlasherTest.h"

#include <QElapsedTimer>

#include <csignal>

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
        return runUsb("printf '" + first + '\'' + m_tools.pause() + "printf '" + second + '\'');
    }
};

TEST_F(FlasherRunTest, TheOsMarkerAndThenASuccessLineShow48And100)
{
    EXPECT_EQ(runInTwoReads("Upgrade fwc: image.target.os\\n", "Burn image successfully!\\n"), BurnSucceeded);
    EXPECT_EQ(m_reporter.progress(), (QStringList{QStringLiteral("48"), QStringLiteral("100")}));
    EXPECT_EQ(m_picture.levels, (QList<double>{0.0, 48.0, 100.0, 100.0}));
    EXPECT_GT(m_picture.repaints, 2);
}

TEST_F(FlasherRunTest, ASuccessLineAndAMarkerInOneChunkEndWithTheMarkersValue)
{
    EXPECT_EQ(runUsb("printf 'Upgrade fwc: image.target.os\\nBurn image successfully!\\n'"), BurnSucceeded);
    EXPECT_EQ(m_reporter.progress(), (QStringList{QStringLiteral("100"), QStringLiteral("48")}));
    EXPECT_EQ(m_picture.levels, (QList<double>{0.0, 100.0, 48.0, 100.0}));
}

TEST_F(FlasherRunTest, TheImagePathIsOneArgumentWhateverItHolds)
{
    runUsb("true");
    EXPECT_EQ(m_tools.runs(), QStringList{QStringLiteral("usb|image|/srv/an image.img")});
}

TEST_F(FlasherRunTest, AnExitWithoutOutputIsResult1)
{
    EXPECT_EQ(runUsb("exit 0"), BurnWithoutSuccessLine);
    EXPECT_TRUE(m_reporter.events().isEmpty());
    EXPECT_EQ(m_picture.levels, QList<double>{0.0});
}

TEST_F(FlasherRunTest, AChunkWithBurnButWithoutSuccessfullyChangesNothingButTheLog)
{
    const RecordedDebugStream debug;
    EXPECT_EQ(runUsb("echo 'Burn image 12 %'"), BurnWithoutSuccessLine);
    EXPECT_EQ(m_reporter.events(), QStringList{QStringLiteral("log Burn image 12 %\n")});
    EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("Standard Output: Burn image 12 %\n")});
}

TEST_F(FlasherRunTest, TheExitCodeDoesNotMatter)
{
    EXPECT_EQ(runUsb("echo 'Burn image successfully!'; exit 9"), BurnSucceeded);
}

TEST_F(FlasherRunTest, AnUnreachableDeviceIsResultMinus3WithoutProgress)
{
    EXPECT_EQ(runUsb("echo 'Open upg device failed'"), BurnDeviceNotReachable);
    EXPECT_TRUE(m_reporter.progress().isEmpty());
}

TEST_F(FlasherRunTest, StandardErrorIsLoggedWithItsPrefixAndDecidesNothing)
{
    const RecordedDebugStream debug;
    EXPECT_EQ(runUsb("echo 'Burn image successfully!' >&2"), BurnWithoutSuccessLine);
    EXPECT_EQ(m_reporter.events(),
              QStringList{QStringLiteral("log !!!ERRORMESSAGE!!!: Burn image successfully!\n")});
    EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("Standard Error: Burn image successfully!\n")});
}

TEST_F(FlasherRunTest, GarbageAndZeroBytesBeforeAMarkerHideNothing)
{
    EXPECT_EQ(runUsb("printf 'a\\000\\377 Upgrade fwc: image.target.env\\n'"), BurnWithoutSuccessLine);
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
    runUsb("sleep 0.1");
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
                  "echo 'Upgrade fwc: image.target.os'; echo 'Burn image successfully!'");
    Flasher flasher(reporter, m_picture, m_state, m_clock, m_paths);
    EXPECT_EQ(flasher.runFlasher(m_paths.usbFlasher, m_image), BurnSucceeded);
    EXPECT_GE(watched, 200);
    EXPECT_EQ(reporter.progress(), (QStringList{QStringLiteral("100"), QStringLiteral("48")}));
}

TEST_F(FlasherRunTest, LeavingKillsTheChildWithinASecond)
{
    const QString pidFile = m_tools.program(QStringLiteral("pid"));
    pid_t child = 0;
    QElapsedTimer sinceLeaving;
    m_clock.whileWatching = [&] {
        QFile file(pidFile);
        if (child == 0 && file.open(QIODevice::ReadOnly))
            child = file.readAll().trimmed().toInt();
        if (child != 0 && !sinceLeaving.isValid()) {
            m_clock.leave();
            sinceLeaving.start();
        }
    };
    const QByteArray note = "echo $$ > '" + pidFile.toUtf8();
    EXPECT_EQ(
        runUsb(note + ".new'; mv '" + pidFile.toUtf8() + ".new' '" + pidFile.toUtf8() + "'; exec sleep 60"),
        BurnWithoutSuccessLine);
    EXPECT_LT(sinceLeaving.elapsed(), 1000);
    ASSERT_GT(child, 1);
    EXPECT_NE(kill(child, 0), 0) << "the child is still there";
    EXPECT_FALSE(m_state.isFlashing());
}

} // namespace
