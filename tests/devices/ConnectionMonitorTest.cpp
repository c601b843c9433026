#include "devices/ConnectionMonitor.h"

#include "devices/Bootloader.h"
#include "simulator/files/WholeFile.h"
#include "tests/common/FakeHidPort.h"
#include "tests/common/FakeUsbBus.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/common/RecordingReporter.h"
#include "tests/devices/DeviceTestValues.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace {

class ConnectionMonitorTest : public testing::Test
{
protected:
    /// Runs a tick on the device that the previous tick returned, as the window does.
    MonitorOutcome tick(const LaunchOptions &options = LaunchOptions())
    {
        MonitorOutcome outcome = monitor(options).tick(m_device);
        m_device = outcome.device;
        return outcome;
    }
    ConnectionMonitor monitor(const LaunchOptions &options = LaunchOptions())
    {
        return ConnectionMonitor({m_usb, m_hid, m_reporter,
                                  [this](const QByteArray &bytes) { m_output += bytes; },
                                  path("ControlDevList.json"), path("log.txt"), path("UPDLog.txt")},
                                 options);
    }
    QString path(const char *name) const { return m_folder.filePath(QString::fromUtf8(name)); }
    void plug(const char *name) { m_usb.plug(model(name).vendorId, model(name).productId); }
    void plugBootloader() { m_usb.plug(Bootloader::vendorId, Bootloader::productId); }
    void writeList(const QByteArray &devices)
    {
        ASSERT_TRUE(WholeFile::write(path("ControlDevList.json"), "{\"devices\":[" + devices + "]}"));
    }
    void switchOn(const char *name) { writeList(QByteArray("{\"id\":\"") + name + "\",\"is_on\":true}"); }
    void expectNoDevice() const
    {
        EXPECT_TRUE(m_device.name.isEmpty());
        EXPECT_EQ(m_device.vendorId, 0U);
        EXPECT_EQ(m_device.productId, 0U);
    }

    QTemporaryDir m_folder;
    FakeUsbBus m_usb;
    FakeHidPort m_hid;
    RecordingReporter m_reporter;
    RecordedDebugStream m_debug;
    QByteArray m_output;
    ChosenDevice m_device;
};

TEST_F(ConnectionMonitorTest, ADeviceThatIsSwitchedOnIsFound)
{
    switchOn("DevMaa");
    plug("DevMaa");
    const MonitorOutcome outcome = tick();
    EXPECT_EQ(outcome.state, ConnectionState::Device);
    EXPECT_EQ(m_device.name, QStringLiteral("DevMaa"));
    EXPECT_EQ(m_device.vendorId, model("DevMaa").vendorId);
    EXPECT_EQ(m_device.productId, model("DevMaa").productId);
    EXPECT_TRUE(outcome.setDeviceModel);
    EXPECT_FALSE(outcome.bootloaderPresent || outcome.pressStart || outcome.prepareIapPanel);
    EXPECT_EQ(m_reporter.events(), (QStringList{QStringLiteral("log Find dev for json dev: DevMaa"),
                                                QStringLiteral("log Find deviceName: DevMaa")}));
    EXPECT_EQ(m_usb.listings(), 2) << "once for the bootloaders, once for the scan";
}

TEST_F(ConnectionMonitorTest, AConnectedDeviceAddsItsLineOnEveryTick)
{
    switchOn("DevMaa");
    plug("DevMaa");
    for (int i = 0; i < 3; ++i)
        tick();
    EXPECT_EQ(m_reporter.logLines().count(QStringLiteral("Find deviceName: DevMaa")), 3);
}

TEST_F(ConnectionMonitorTest, AModelThatIsSwitchedOffIsNotDetectedAndItsNameIsCleared)
{
    writeList(R"({"id":"DevMaa","is_on":false})");
    plug("DevMaa");
    const MonitorOutcome outcome = tick();
    EXPECT_EQ(outcome.state, ConnectionState::Nothing);
    EXPECT_TRUE(outcome.setDeviceModel);
    expectNoDevice();
    EXPECT_EQ(m_reporter.logLines(), (QStringList{QStringLiteral("Find dev for json dev: DevMaa"),
                                                  QStringLiteral("Find deviceName: DevMaa")}));
}

TEST_F(ConnectionMonitorTest, AModelThatIsMissingFromTheListIsNotDetectedAndItsNameIsCleared)
{
    switchOn("DevMab");
    plug("DevMaa");
    EXPECT_EQ(tick().state, ConnectionState::Nothing);
    expectNoDevice();
}

TEST_F(ConnectionMonitorTest, WithoutTheListNoModelIsDetected)
{
    plug("DevMaa");
    EXPECT_EQ(tick().state, ConnectionState::Nothing);
    EXPECT_EQ(m_reporter.logLines(), (QStringList{QStringLiteral("Failed to open file: dev json.!"),
                                                  QStringLiteral("Find deviceName: DevMaa")}));
}

TEST_F(ConnectionMonitorTest, TheListIsReadOnEveryTickEvenWithoutADeviceAndInTheAutomaticModes)
{
    const QString line = QStringLiteral("Failed to open file: dev json.!");
    tick();
    EXPECT_EQ(m_reporter.logLines().count(line), 1);
    plug("ZN58");
    tick(zn58Mode());
    EXPECT_EQ(m_reporter.logLines().count(line), 2);
}

TEST_F(ConnectionMonitorTest, UnpluggingShowsNoDeviceOnTheNextTick)
{
    switchOn("DevMaa");
    plug("DevMaa");
    tick();
    m_usb.unplugAll();
    const MonitorOutcome outcome = tick();
    EXPECT_EQ(outcome.state, ConnectionState::Nothing);
    EXPECT_TRUE(outcome.setDeviceModel);
    expectNoDevice();
}

TEST_F(ConnectionMonitorTest, ClearingKeepsFlagsAndHandle)
{
    switchOn("DevMah");
    plug("DevMah");
    m_hid.add(model("DevMah").vendorId, model("DevMah").productId, "MI_00");
    tick();
    ASSERT_NE(m_device.hidHandle, nullptr);
    m_device.iapFlag = 1;
    m_usb.unplugAll();
    tick();
    expectNoDevice();
    EXPECT_EQ(m_device.hidPathFlag, 1);
    EXPECT_EQ(m_device.iapFlag, 1);
    EXPECT_NE(m_device.hidHandle, nullptr);
}

TEST_F(ConnectionMonitorTest, AnIapDevicePreparesThePanelAndPassesItsIds)
{
    switchOn("DevMdq");
    plug("DevMdq");
    const MonitorOutcome outcome = tick();
    EXPECT_EQ(outcome.state, ConnectionState::IapDevice);
    EXPECT_TRUE(outcome.prepareIapPanel);
    ASSERT_TRUE(outcome.iapIds.has_value());
    EXPECT_EQ(outcome.iapIds->vendorId, model("DevMdq").vendorId);
    EXPECT_EQ(outcome.iapIds->productId, model("DevMdq").productId);
    EXPECT_EQ(m_device.iapFlag, 1);
}

TEST_F(ConnectionMonitorTest, AnIapDeviceThatIsSwitchedOffStillPassesItsIds)
{
    plug("DevMdq");
    const MonitorOutcome outcome = tick();
    EXPECT_EQ(outcome.state, ConnectionState::Nothing);
    EXPECT_FALSE(outcome.prepareIapPanel);
    EXPECT_TRUE(outcome.iapIds.has_value());
}

TEST_F(ConnectionMonitorTest, DevMdhIsAnIapDeviceWhoseIdsAreNotPassed)
{
    switchOn("DevMdh");
    plug("DevMdh");
    const MonitorOutcome outcome = tick();
    EXPECT_EQ(outcome.state, ConnectionState::IapDevice);
    EXPECT_TRUE(outcome.prepareIapPanel);
    EXPECT_FALSE(outcome.iapIds.has_value());
}

TEST_F(ConnectionMonitorTest, ZN58ModePressesStartWithoutCheckingTheList)
{
    plug("ZN58");
    const MonitorOutcome outcome = tick(zn58Mode());
    EXPECT_EQ(outcome.state, ConnectionState::DeviceStartsItself);
    EXPECT_TRUE(outcome.pressStart);
    EXPECT_TRUE(outcome.setDeviceModel);
    EXPECT_EQ(m_hid.enumerations(), 0);
    EXPECT_TRUE(tick(zn58Mode()).pressStart) << "the monitor itself has no guard against pressing again";
}

TEST_F(ConnectionMonitorTest, InZn58ModeADeviceWithAnotherModelsIdsIsNotDetected)
{
    switchOn("DevMaa");
    plug("DevMaa");
    const MonitorOutcome outcome = tick(zn58Mode());
    EXPECT_EQ(outcome.state, ConnectionState::Nothing);
    EXPECT_FALSE(outcome.pressStart);
    expectNoDevice();
}

TEST_F(ConnectionMonitorTest, TessilonixModePressesStartForTheWantedModelOnly)
{
    plug("DevMbs");
    EXPECT_EQ(tick(tessilonixMode("DevMbr")).state, ConnectionState::Nothing);
    plug("DevMbr");
    const MonitorOutcome outcome = tick(tessilonixMode("DevMbr"));
    EXPECT_EQ(outcome.state, ConnectionState::DeviceStartsItself);
    EXPECT_TRUE(outcome.pressStart);
    EXPECT_EQ(m_device.name, QStringLiteral("DevMbr"));
    EXPECT_EQ(m_hid.enumerations(), 1);
}

TEST_F(ConnectionMonitorTest, OneBootloaderKeepsTheDeviceAndRunsNoScan)
{
    switchOn("DevMah");
    plug("DevMah");
    m_hid.add(model("DevMah").vendorId, model("DevMah").productId, "MI_00");
    tick();
    const ChosenDevice before = m_device;
    const int enumerations = m_hid.enumerations();
    const int listings = m_usb.listings();
    const int logged = m_reporter.logLines().size();

    plugBootloader();
    const MonitorOutcome outcome = tick();
    EXPECT_EQ(outcome.state, ConnectionState::OneBootloader);
    EXPECT_TRUE(outcome.bootloaderPresent);
    EXPECT_FALSE(outcome.setDeviceModel || outcome.pressStart || outcome.prepareIapPanel);
    EXPECT_FALSE(outcome.iapIds.has_value());
    EXPECT_EQ(m_device.name, before.name);
    EXPECT_EQ(m_device.productId, before.productId);
    EXPECT_EQ(m_device.hidPathFlag, 1);
    EXPECT_EQ(m_device.hidHandle, before.hidHandle);
    EXPECT_EQ(m_hid.enumerations(), enumerations);
    EXPECT_EQ(m_usb.listings(), listings + 1);
    EXPECT_EQ(m_reporter.logLines().mid(logged),
              (QStringList{QStringLiteral("Find Bootloader Dev.!!, bootloader Count: 1"),
                           QStringLiteral("Run User Chose Mode.")}));
}

TEST_F(ConnectionMonitorTest, TwoBootloadersWarnOnEveryTickAndKeepTheDevice)
{
    m_device.name = QStringLiteral("DevMbu");
    m_device.vendorId = 1;
    m_device.productId = 2;
    m_device.iapFlag = 3;
    m_device.hidPathFlag = 4;
    m_hid.add(1, 2, "duo");
    m_device.hidHandle = m_hid.openPath("duo");
    const std::shared_ptr<HidDevice> handle = m_device.hidHandle;
    plugBootloader();
    plugBootloader();
    for (int i = 0; i < 2; ++i) {
        const MonitorOutcome outcome = tick();
        EXPECT_EQ(outcome.state, ConnectionState::SeveralBootloaders);
        EXPECT_TRUE(outcome.bootloaderPresent);
        EXPECT_FALSE(outcome.setDeviceModel || outcome.pressStart || outcome.prepareIapPanel);
    }
    EXPECT_EQ(m_device.name, QStringLiteral("DevMbu"));
    EXPECT_EQ(m_device.vendorId, 1U);
    EXPECT_EQ(m_device.productId, 2U);
    EXPECT_EQ(m_device.iapFlag, 3);
    EXPECT_EQ(m_device.hidPathFlag, 4);
    EXPECT_EQ(m_device.hidHandle, handle);
    EXPECT_EQ(m_hid.enumerations(), 0) << "no scan runs";
    const QStringList once{QStringLiteral("Find Bootloader Dev.!!, bootloader Count: 2"),
                           QStringLiteral("warnning: bootloaderCount>1")};
    EXPECT_EQ(m_reporter.logLines(), once + once);
}

TEST_F(ConnectionMonitorTest, TheBootloaderIsNeverReportedAsDevMdj)
{
    switchOn("DevMdj");
    plugBootloader();
    const MonitorOutcome outcome = tick();
    EXPECT_EQ(outcome.state, ConnectionState::OneBootloader);
    EXPECT_TRUE(m_device.name.isEmpty());
}

TEST_F(ConnectionMonitorTest, OtherModelsOfTheSocsVendorAreNoBootloaders)
{
    switchOn("DevMdm");
    m_usb.plug(0x33C3, 0x6781);
    const MonitorOutcome outcome = tick();
    EXPECT_FALSE(outcome.bootloaderPresent);
    EXPECT_EQ(m_device.name, QStringLiteral("DevMdm"));
}

TEST_F(ConnectionMonitorTest, TheBootloaderFlagIsClearedWithTheLastBootloader)
{
    plugBootloader();
    EXPECT_TRUE(tick().bootloaderPresent);
    m_usb.unplugAll();
    EXPECT_FALSE(tick().bootloaderPresent);
}

TEST_F(ConnectionMonitorTest, AHidPathModelWhoseInterfaceIsMissingIsStillDetected)
{
    switchOn("DevMah");
    plug("DevMah");
    EXPECT_EQ(tick().state, ConnectionState::Device);
    EXPECT_EQ(m_device.hidPathFlag, 1);
    EXPECT_EQ(m_device.hidHandle, nullptr);
    EXPECT_EQ(m_reporter.logLines(), (QStringList{QStringLiteral("not find DuoDevices!"),
                                                  QStringLiteral("Find dev for json dev: DevMah"),
                                                  QStringLiteral("Find deviceName: DevMah")}));
}

TEST_F(ConnectionMonitorTest, TheDebugStreamNamesTheDeviceBeforeTheTickAndBothCounts)
{
    m_device.name = QStringLiteral("DevMaa");
    m_usb.plug(0x1D6B, 2);
    tick();
    EXPECT_EQ(m_debug.lines().first(), QStringLiteral("当前检查到链接设备有:DevMaa"));
    EXPECT_EQ(m_debug.lines().at(1), QStringLiteral("Device List Count:1"));
    EXPECT_EQ(m_debug.lines().count(QStringLiteral("Device List Count:1")), 2);
    EXPECT_EQ(m_output, "idVendor:0x:1D6B\nidVendor:0x:2\nidVendor:0x:0\n\n\n");
}

TEST_F(ConnectionMonitorTest, ABusThatCannotBeListedCountsAsNothingFound)
{
    m_usb.failWith(-99);
    EXPECT_EQ(tick().state, ConnectionState::Nothing);
    EXPECT_TRUE(m_debug.lines().contains(QStringLiteral("Device List Count:-99")));
}

TEST_F(ConnectionMonitorTest, ATickWritesNoDescriptorsToTheUpdateLog)
{
    plug("DevMaa");
    tick();
    EXPECT_FALSE(QFile::exists(path("UPDLog.txt")));
}

TEST_F(ConnectionMonitorTest, AScanDumpsEveryExaminedDescriptorOnRequest)
{
    m_usb.plug(0x1D6B, 2);
    plug("DevMaa");
    plug("DevMab");
    std::optional<IapIds> iapIds;
    EXPECT_TRUE(monitor().scanUsb(m_device, iapIds, true));
    EXPECT_EQ(WholeFile::read(path("UPDLog.txt")).count("get_device_descriptor.PID: "), 2);
}

TEST_F(ConnectionMonitorTest, AScanThatFindsNothingDoesNotChangeTheDevice)
{
    m_device.name = QStringLiteral("DevMaa");
    std::optional<IapIds> iapIds;
    EXPECT_FALSE(monitor().scanUsb(m_device, iapIds, false));
    EXPECT_EQ(m_device.name, QStringLiteral("DevMaa"));
}

TEST_F(ConnectionMonitorTest, ATickWithAFullBusStaysWellBelowFiveMilliseconds)
{
    for (quint16 i = 0; i < 127; ++i)
        m_usb.plug(0x1D6B, i);
    ConnectionMonitor watched = monitor();
    qint64 best = std::numeric_limits<qint64>::max();
    for (int i = 0; i < 30; ++i) {
        QElapsedTimer timer;
        timer.start();
        watched.tick(m_device);
        best = std::min(best, timer.nsecsElapsed());
    }
    RecordProperty("best_microseconds", static_cast<int>(best / 1000));
    EXPECT_LT(best, 5'000'000) << "nanoseconds";
}

} // namespace
