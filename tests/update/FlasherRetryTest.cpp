#include "simulator/time/RunningTime.h"
#include "tests/common/LeapingClock.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/update/FlasherTest.h"

#include "support/process/ShutdownFlag.h"

#include <QTimer>

namespace {

class FlasherRetryTest : public FlasherTest
{
protected:
    void TearDown() override { ShutdownFlag::instance().lower(); }
    void setDeviceName(const QString &name)
    {
        ChosenDevice device;
        device.name = name;
        m_choices.setFound(device, false);
    }

    const ToolSteps m_unreachable = ToolStep::print("Open upg device failed\n");
    const ToolSteps m_success = ToolStep::print("Burn image successfully!\n");
    const QString m_usbRun = QStringLiteral("usb|image|/srv/an image.img");
};

TEST_F(FlasherRetryTest, AnUnreachableDeviceTenTimesIsTenRuns1000MillisecondsApartAndNoSuccess)
{
    m_tools.write(QStringLiteral("usb"), m_unreachable);
    EXPECT_FALSE(burnUsb(true));
    EXPECT_EQ(m_tools.runs().count(m_usbRun), 10);
    EXPECT_EQ(m_tools.runs().size(), 10);
    EXPECT_EQ(m_clock.longSleeps, QList<int>({1000, 1000, 1000, 1000, 1000, 1000, 1000, 1000, 1000, 1000}));
}

TEST_F(FlasherRetryTest, NineTimesUnreachableAndThenASuccessIsASuccess)
{
    QList<QJsonArray> runs;
    for (int i = 0; i < 9; ++i)
        runs.append(m_unreachable.toJson());
    runs.append(m_success.toJson());
    m_tools.writeScript(QStringLiteral("usb"), StandinScript::script(runs));
    EXPECT_TRUE(burnUsb(true));
    EXPECT_EQ(m_tools.runs().size(), 10);
}

TEST_F(FlasherRetryTest, AnUnreachableDeviceThatIsReportedInTwoReadsIsRetried)
{
    m_clock.whileWatching = [this] {
        if (!m_reporter.logLines().isEmpty())
            m_tools.letGoOn();
    };
    const ToolSteps toldInTwo =
        ToolStep::print("Open upg dev") + m_tools.pause() + ToolStep::print("ice failed\n");
    m_tools.writeScript(QStringLiteral("usb"),
                        StandinScript::script({toldInTwo.toJson(), m_success.toJson()}));
    EXPECT_TRUE(burnUsb(true));
    EXPECT_EQ(m_tools.runs().size(), 2);
    EXPECT_EQ(m_reporter.logLines().mid(0, 2),
              (QStringList{QStringLiteral("Open upg dev"), QStringLiteral("ice failed\n")}));
}

TEST_F(FlasherRetryTest, AnExitWithoutOutputIsNotRetried)
{
    m_tools.write(QStringLiteral("usb"), ToolStep::exitWith(0));
    EXPECT_FALSE(burnUsb(true));
    EXPECT_EQ(m_tools.runs().size(), 1);
    EXPECT_EQ(m_clock.longSleeps, QList<int>{1000});
}

TEST_F(FlasherRetryTest, AFlasherThatCannotBeStartedIsNotRetried)
{
    EXPECT_FALSE(burnUsb(true));
    EXPECT_EQ(m_reporter.events().size(), 1);
    EXPECT_EQ(m_clock.longSleeps, QList<int>{1000});
}

TEST_F(FlasherRetryTest, FailureLeavesTheCallersFlagUnchanged)
{
    m_tools.write(QStringLiteral("usb"), ToolStep::exitWith(0));
    bool ok = true;
    flasher().burnWithRetry(&ok, true);
    EXPECT_TRUE(ok);
}

TEST_F(FlasherRetryTest, ADeviceNamedUsbIsBurnedEvenIfTheBootloaderEntryFailed)
{
    setDeviceName(QStringLiteral("USB"));
    m_tools.write(QStringLiteral("usb"), m_success);
    EXPECT_TRUE(burnUsb(false));
    EXPECT_EQ(m_tools.runs(), QStringList{m_usbRun});
}

TEST_F(FlasherRetryTest, AnotherDeviceIsNotBurnedWhenTheBootloaderEntryFailed)
{
    const RecordedDebugStream debug;
    setDeviceName(QStringLiteral("usb"));
    m_tools.write(QStringLiteral("usb"), m_success);
    EXPECT_FALSE(burnUsb(false));
    EXPECT_TRUE(m_tools.runs().isEmpty());
    EXPECT_EQ(m_reporter.events(), QStringList{QStringLiteral("log try to bootloader err.")});
    EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("try to bootloader err")});
    EXPECT_TRUE(m_clock.longSleeps.isEmpty());
}

TEST_F(FlasherRetryTest, OverHidTheHidFlasherIsRunUpToTenTimes)
{
    m_tools.write(QStringLiteral("hid"), m_unreachable);
    EXPECT_FALSE(flasher().burnOverHid());
    EXPECT_EQ(m_tools.runs().count(QStringLiteral("hid|image|/srv/an image.img")), 10);
    EXPECT_EQ(m_clock.longSleeps.count(1000), 10);
    m_tools.write(QStringLiteral("hid"), m_success);
    EXPECT_TRUE(flasher().burnOverHid());
}

TEST_F(FlasherRetryTest, BetweenTwoAttemptsTheDeviceIsNotBeingWritten)
{
    m_tools.write(QStringLiteral("usb"), m_unreachable);
    QList<UpdateStage> stages;
    m_session->watchStages([&stages](UpdateStage stage) { stages.append(stage); });
    burnUsb(true);
    ASSERT_EQ(stages.size(), 20);
    EXPECT_EQ(stages.mid(0, 2), (QList<UpdateStage>{UpdateStage::Flashing, UpdateStage::EnteringBootloader}));
    EXPECT_EQ(stages.count(UpdateStage::Flashing), 10);
}

TEST_F(FlasherRetryTest, ShuttingDownBetweenTwoAttemptsEndsThem)
{
    m_tools.write(QStringLiteral("usb"), m_unreachable);
    m_clock.shutDown();
    EXPECT_FALSE(burnUsb(true));
    EXPECT_TRUE(m_tools.runs().isEmpty());
}

class FlasherResetTest : public FlasherRetryTest
{
};

TEST_F(FlasherResetTest, AToolThatEndsIsASuccess)
{
    m_tools.write(QStringLiteral("usb"), ToolStep::exitWith(3));
    EXPECT_TRUE(flasher().RunCmdReset(m_paths.usbFlasher));
    EXPECT_EQ(m_tools.runs(), QStringList{QStringLiteral("usb|shcmd|reset")});
    EXPECT_EQ(m_reporter.events(), (QStringList{QStringLiteral("log try to RunCmdReset..."),
                                                QStringLiteral("log RunCmdReset Done.")}));
}

TEST_F(FlasherResetTest, AToolThatCannotBeStartedFails)
{
    const RecordedDebugStream debug;
    EXPECT_FALSE(flasher().RunCmdReset(m_paths.usbFlasher));
    EXPECT_EQ(m_reporter.events(), (QStringList{QStringLiteral("log try to RunCmdReset..."),
                                                QStringLiteral("log Failed to start process!")}));
    EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("Failed to start process!")});
}

TEST_F(FlasherResetTest, AToolThatDoesNotEndIsKilledAfter30Seconds)
{
    m_tools.write(QStringLiteral("usb"), ToolStep::hang());
    LeapingClock clock(1000);
    Flasher flasher(m_reporter, m_picture, *m_session, clock, m_paths, {});
    EXPECT_FALSE(flasher.RunCmdReset(m_paths.usbFlasher));
    // Readings of the clock while the tool starts do not count towards its 30 seconds.
    EXPECT_GE(clock.lastMs(), 32000);
    EXPECT_LE(clock.lastMs(), 63000);
    EXPECT_EQ(m_reporter.events(), (QStringList{QStringLiteral("log try to RunCmdReset..."),
                                                QStringLiteral("log Process did not finish!")}));
}

TEST_F(FlasherResetTest, ShuttingDownKillsTheTool)
{
    m_tools.write(QStringLiteral("usb"), ToolStep::hang());
    QTimer::singleShot(100, [] { ShutdownFlag::instance().raise(); });
    const RunningTimer timer;
    EXPECT_FALSE(flasher().RunCmdReset(m_paths.usbFlasher));
    EXPECT_LT(timer.elapsed(), 5000);
    EXPECT_EQ(m_reporter.logLines().last(), QStringLiteral("Process did not finish!"));
}

} // namespace
