#include "support/log/QuietReporter.h"

#include "devices/ConnectionMonitor.h"
#include "support/log/Diagnostics.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <hidapi.h>
#include <libusb.h>

#include <chrono>

namespace {

/// The time spent in the device libraries, whose functions are wrapped below. Set to 0 before each tick.
double libraryMs = 0;

double nowMs()
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

template <typename Call>
auto timed(Call call)
{
    const double start = nowMs();
    auto result = call();
    libraryMs += nowMs() - start;
    return result;
}

} // namespace

// The linker redirects the product's calls to these functions (--wrap), so that the product's own share of a
// tick can be separated from that of the libraries.
extern "C" {
ssize_t __real_libusb_get_device_list(libusb_context *context, libusb_device ***list);
void __real_libusb_free_device_list(libusb_device **list, int unref);
hid_device_info *__real_hid_enumerate(unsigned short vendor, unsigned short product);
void __real_hid_free_enumeration(hid_device_info *devices);
hid_device *__real_hid_open_path(const char *path);
void __real_hid_close(hid_device *device);

ssize_t __wrap_libusb_get_device_list(libusb_context *context, libusb_device ***list)
{
    return timed([&] { return __real_libusb_get_device_list(context, list); });
}

void __wrap_libusb_free_device_list(libusb_device **list, int unref)
{
    timed([&] { return __real_libusb_free_device_list(list, unref), 0; });
}

hid_device_info *__wrap_hid_enumerate(unsigned short vendor, unsigned short product)
{
    return timed([&] { return __real_hid_enumerate(vendor, product); });
}

void __wrap_hid_free_enumeration(hid_device_info *devices)
{
    timed([&] { return __real_hid_free_enumeration(devices), 0; });
}

hid_device *__wrap_hid_open_path(const char *path)
{
    return timed([&] { return __real_hid_open_path(path); });
}

void __wrap_hid_close(hid_device *device)
{
    timed([&] { return __real_hid_close(device), 0; });
}
}

namespace {

struct Seen
{
    int devices = 0;
    int interfaces = 0;
};

/// Does only what a tick needs of the libraries, as the peer: two device lists with descriptors and one
/// enumeration.
Seen runBareCalls()
{
    Seen seen;
    for (int look = 0; look < 2; ++look) {
        libusb_device **list = nullptr;
        const ssize_t count = __real_libusb_get_device_list(nullptr, &list);
        seen.devices = static_cast<int>(count);
        for (ssize_t i = 0; i < count; ++i) {
            libusb_device_descriptor descriptor{};
            libusb_get_device_descriptor(list[i], &descriptor);
        }
        __real_libusb_free_device_list(list, 1);
    }
    hid_device_info *interfaces = __real_hid_enumerate(0, 0);
    for (const hid_device_info *info = interfaces; info; info = info->next)
        ++seen.interfaces;
    __real_hid_free_enumeration(interfaces);
    return seen;
}

} // namespace

/// Runs a tick of the product's monitor and the bare library calls in turns, as often as argument 3 says.
/// Argument 1 is the control list; the figures are written to the file in argument 2.
int main(int argc, char *argv[])
{
    Diagnostics::install();
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (libusb_init(nullptr) != LIBUSB_SUCCESS || hid_init() != 0)
        return 1;
    QuietReporter reporter;
    const std::unique_ptr<UsbBus> usb = makeLibusbBus(true);
    const std::unique_ptr<HidPort> hid = makeHidapiPort();
    ConnectionMonitor monitor({*usb, *hid, reporter, &Diagnostics::writeStandardOutput, arguments.value(1),
                               QStringLiteral("log.txt"), QStringLiteral("UPDLog.txt")},
                              {});
    QJsonArray ticks;
    QJsonArray own;
    QJsonArray bare;
    ChosenDevice device;
    Seen seen;
    bool isHandleOpen = true;
    for (int i = 0; i < arguments.value(3).toInt(); ++i) {
        libraryMs = 0;
        double start = nowMs();
        MonitorOutcome outcome = monitor.tick(device);
        const double tick = nowMs() - start;
        ticks.append(tick);
        own.append(tick - libraryMs);
        device = outcome.device;
        isHandleOpen = isHandleOpen && device.hidHandle != nullptr;
        start = nowMs();
        seen = runBareCalls();
        bare.append(nowMs() - start);
    }
    QFile file(arguments.value(2));
    const QJsonObject result{{QStringLiteral("tick"), ticks},
                             {QStringLiteral("own"), own},
                             {QStringLiteral("bare"), bare},
                             {QStringLiteral("devices"), seen.devices},
                             {QStringLiteral("interfaces"), seen.interfaces},
                             {QStringLiteral("name"), device.name},
                             {QStringLiteral("opened"), isHandleOpen}};
    const bool isWritten =
        file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(result).toJson()) > 0 && file.flush();
    device = ChosenDevice();
    hid_exit();
    libusb_exit(nullptr);
    Diagnostics::flush(1000);
    return isWritten ? 0 : 1;
}
