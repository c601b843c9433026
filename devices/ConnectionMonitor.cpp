#include "devices/ConnectionMonitor.h"

#include "devices/Bootloader.h"
#include "devices/ControlledDeviceList.h"
#include "devices/hid/HidScan.h"

#include <QDebug>

#include <libusb.h>

#include <algorithm>
#include <utility>

ConnectionMonitor::ConnectionMonitor(Dependencies dependencies, LaunchOptions options)
    : m_dependencies(std::move(dependencies)),
      m_options(std::move(options))
{
}

MonitorOutcome ConnectionMonitor::tick(const ChosenDevice &current)
{
    qDebug().noquote().nospace() << "当前检查到链接设备有:" << current.name;
    if (const int bootloaders = countBootloaders(); bootloaders > 0)
        return reportBootloaders(bootloaders, current);

    MonitorOutcome outcome;
    outcome.device = current;
    ChosenDevice &device = outcome.device;
    if (!scanUsb(device, outcome.iapIds, false))
        device.clear();
    const bool inList =
        ControlledDeviceList::findDevForJson(m_dependencies.listPath, device.name, m_dependencies.reporter);
    if (!device.name.isEmpty())
        m_dependencies.reporter.log(QLatin1String("Find deviceName: ") + device.name);

    outcome.state = stateOf(device, m_options, inList);
    outcome.setDeviceModel = true;
    outcome.pressStart = outcome.state == ConnectionState::DeviceStartsItself;
    outcome.prepareIapPanel = outcome.state == ConnectionState::IapDevice;
    if (outcome.state == ConnectionState::Nothing)
        device.clear();
    return outcome;
}

bool ConnectionMonitor::scanUsb(ChosenDevice &device, std::optional<IapIds> &iapIds, bool dumpDescriptors)
{
    const UsbBus::Listing listing = list();
    const UsbScanResult result = scanListing(listing, m_table, m_options, device);
    for (int i = 0; i < result.examined; ++i) {
        DescriptorDump::write(listing.descriptors.at(i), m_dependencies.standardOutput);
        if (dumpDescriptors)
            DescriptorDump::append(listing.descriptors.at(i), m_dependencies.updateLogPath);
    }
    if (!result.found)
        return false;
    device = result.device;
    if (result.hidScanWanted)
        HidScan::run(m_dependencies.hid, device, m_dependencies.reporter, m_dependencies.interfaceLogPath);
    if (result.iapIds)
        iapIds = result.iapIds;
    return true;
}

UsbBus::Listing ConnectionMonitor::list()
{
    UsbBus::Listing listing = m_dependencies.usb.list();
    qDebug().noquote() << QStringLiteral("Device List Count:%0").arg(listing.count);
    return listing;
}

int ConnectionMonitor::countBootloaders()
{
    const UsbBus::Listing listing = list();
    return static_cast<int>(std::count_if(listing.descriptors.begin(), listing.descriptors.end(),
                                          [](const libusb_device_descriptor &seen) {
                                              return Bootloader::hasIds(seen.idVendor, seen.idProduct);
                                          }));
}

MonitorOutcome ConnectionMonitor::reportBootloaders(int count, const ChosenDevice &current)
{
    Reporter &reporter = m_dependencies.reporter;
    reporter.log(QStringLiteral("Find Bootloader Dev.!!, bootloader Count: ") + QString::number(count));
    MonitorOutcome outcome;
    outcome.device = current;
    outcome.bootloaderPresent = true;
    if (count == 1) {
        reporter.log(QStringLiteral("Run User Chose Mode."));
        outcome.state = ConnectionState::OneBootloader;
    } else {
        reporter.log(QStringLiteral("warnning: bootloaderCount>1"));
        outcome.state = ConnectionState::SeveralBootloaders;
    }
    return outcome;
}
