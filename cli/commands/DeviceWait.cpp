#include "cli/commands/DeviceWait.h"

#include "cli/commands/CommandContext.h"
#include "cli/commands/ModelBus.h"
#include "devices/Bootloader.h"
#include "devices/RefusedDevice.h"
#include "support/Clock.h"
#include "support/log/QuietReporter.h"

#include <libusb.h>

#include <algorithm>

namespace {

constexpr int intervalMs = 500;
/// How long a device takes to restart.
constexpr qint64 restartLimitMs = 20000;

bool mayOpen(const ChosenDevice &device)
{
    return findRefusedDeviceFile([&device](quint32 vendorId, quint32 productId) {
               return vendorId == device.vendorId && productId == device.productId;
           })
        .isEmpty();
}

} // namespace

DeviceWait::Result DeviceWait::wait(qint64 limitMs)
{
    ModelBus bus(m_context.usb(), m_context.options.model);
    QuietReporter quiet;
    const QString seenInterfaces = m_context.folder() + QLatin1String("/interfaces.txt");
    ConnectionMonitor monitor({bus, m_context.hid(), quiet, [](const QByteArray &) {},
                               m_context.tools.controlList, seenInterfaces, seenInterfaces},
                              LaunchOptions());
    const qint64 start = Clock::real().nowMs();
    WaitDecision decision(!m_context.options.model.isEmpty());
    ChosenDevice device;
    for (;;) {
        MonitorOutcome found = monitor.tick(device);
        device = found.device;
        const bool isLate = limitMs >= 0 && Clock::real().nowMs() - start >= limitMs;
        const auto mayOpenIt = [&device] {
            return mayOpen(device);
        };
        const std::optional<End> end = decision.afterLook(found.state, mayOpenIt, isLate);
        // A device that was connected before need not be the one that waits in its bootloader.
        if (found.state == ConnectionState::OneBootloader)
            found.device = ChosenDevice();
        if (end)
            return {*end, found};
        if (!CommandContext::waitMs(intervalMs))
            return {End::Interrupted, found};
    }
}

bool DeviceWait::isConnected()
{
    ModelBus bus(m_context.usb(), m_context.options.model);
    const ModelTable table;
    const UsbBus::Listing listing = bus.list();
    return std::any_of(listing.descriptors.begin(), listing.descriptors.end(),
                       [&](const libusb_device_descriptor &seen) {
                           return Bootloader::hasIds(seen.idVendor, seen.idProduct) ||
                                  table.find(seen.idVendor, seen.idProduct, LaunchOptions()) != nullptr;
                       });
}

bool DeviceWait::waitForDisconnection(bool restarts)
{
    const qint64 start = Clock::real().nowMs();
    bool hasRestarted = !restarts;
    while (CommandContext::waitMs(intervalMs)) {
        const bool connected = isConnected();
        if (!connected && hasRestarted)
            return true;
        // A restarting device is away at first. It may also take too long to come back.
        if (connected)
            hasRestarted = true;
        else if (Clock::real().nowMs() - start > restartLimitMs)
            return true;
    }
    return false;
}
