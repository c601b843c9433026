#include "tests/support/RecordedDebugStream.h"
#include "tests/update/FlasherTest.h"

#include "support/ShutdownFlag.h"

#include <QElapsedTimer>
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
        m_state.setDevice(device);
    }

    const QByteArray m_unreachable = Told::print("Open upg device failed\n");
    const QByteArray m_success = Told::print("Burn image successfully!\n");
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
    m_tools.write(QStringLiteral("usb"), Told::untilRun(9, m_unreachable) + Told::afterRun(9, m_success));
    EXPECT_TRUE(burnUsb(true));
    EXPECT_EQ(m_tools.runs().size(), 10);
}

TEST_F(FlasherRetryTest, AnExitWithoutOutputIsNotRetried)
{
    m_tools.write(QStringLiteral("usb"), Told::exitWith(0));
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
    m_tools.write(QStringLiteral("usb"), Told::exitWith(0));
    bool ok = true;
    m_flasher.burnWithRetry(&ok, true);
    EXPECT_TRUE(ok);
}

TEST_F(FlasherRetryTest, ADeviceNamedUsbIsBurnedThoughTheBootloaderEntryFailed)
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

TEST_F(FlasherRetryTest, OverHidTheSameTenTriesRunTheHidFlasher)
{
    m_tools.write(QStringLiteral("hid"), m_unreachable);
    EXPECT_FALSE(m_flasher.burnOverHid());
    EXPECT_EQ(m_tools.runs().count(QStringLiteral("hid|image|/srv/an image.img")), 10);
    EXPECT_EQ(m_clock.longSleeps.count(1000), 10);
    m_tools.write(QStringLiteral("hid"), m_success);
    EXPECT_TRUE(m_flasher.burnOverHid());
}

TEST_F(FlasherRetryTest, EachTryTakesTheImageThatIsSetThen)
{
    m_tools.write(QStringLiteral("usb"), m_unreachable);
    m_clock.whileWatching = [this] {
        m_state.setImagePath(QStringLiteral("/srv/other.img"));
    };
    burnUsb(true);
    EXPECT_EQ(m_tools.runs().value(0), m_usbRun);
    EXPECT_EQ(m_tools.runs().value(9), QStringLiteral("usb|image|/srv/other.img"));
}

TEST_F(FlasherRetryTest, LeavingBetweenTwoTriesEndsThem)
{
    m_tools.write(QStringLiteral("usb"), m_unreachable);
    m_clock.leave();
    EXPECT_FALSE(burnUsb(true));
    EXPECT_TRUE(m_tools.runs().isEmpty());
}

class FlasherResetTest : public FlasherRetryTest
{
};

TEST_F(FlasherResetTest, AToolThatEndsIsDone)
{
    m_tools.write(QStringLiteral("usb"), Told::exitWith(3));
    EXPECT_TRUE(m_flasher.RunCmdReset(m_paths.usbFlasher));
    EXPECT_EQ(m_tools.runs(), QStringList{QStringLiteral("usb|shcmd|reset")});
    EXPECT_EQ(m_reporter.events(), (QStringList{QStringLiteral("log try to RunCmdReset..."),
                                                QStringLiteral("log RunCmdReset Done.")}));
}

TEST_F(FlasherResetTest, AToolThatCannotBeStartedFails)
{
    const RecordedDebugStream debug;
    EXPECT_FALSE(m_flasher.RunCmdReset(m_paths.usbFlasher));
    EXPECT_EQ(m_reporter.events(), (QStringList{QStringLiteral("log try to RunCmdReset..."),
                                                QStringLiteral("log Failed to start process!")}));
    EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("Failed to start process!")});
}

TEST_F(FlasherResetTest, AToolThatDoesNotEndIsGivenUpAfter30Seconds)
{
    m_tools.write(QStringLiteral("usb"), Told::hang());
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(m_flasher.RunCmdReset(m_paths.usbFlasher));
    // The toolkit's coarse timer keeps the limit to within a twentieth.
    EXPECT_GE(timer.elapsed(), 28500);
    EXPECT_LT(timer.elapsed(), 50000);
    EXPECT_EQ(m_reporter.events(), (QStringList{QStringLiteral("log try to RunCmdReset..."),
                                                QStringLiteral("log Process did not finish!")}));
}

TEST_F(FlasherResetTest, LeavingCutsItShort)
{
    m_tools.write(QStringLiteral("usb"), Told::hang());
    QTimer::singleShot(100, [] { ShutdownFlag::instance().raise(); });
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(m_flasher.RunCmdReset(m_paths.usbFlasher));
    EXPECT_LT(timer.elapsed(), 5000);
    EXPECT_EQ(m_reporter.logLines().last(), QStringLiteral("Process did not finish!"));
}

} // namespace
