#include "harness/BuildPaths.h"
#include "harness/process/Polling.h"
#include "harness/session/BusControllerCommand.h"
#include "harness/session/BusSession.h"
#include "harness/session/ModelOnBus.h"
#include "simulator/files/WholeFile.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

#include <hidapi.h>
#include <libusb.h>

#include <cerrno>
#include <cstring>

// Prints what libusb and hidapi meet on a bus, to compare the simulated one with the kernel's:
//   quillmarsh-bus-facts gadget|simulated

namespace {

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

QString wide(const wchar_t *text)
{
    return text ? QLatin1Char('"') + QString::fromWCharArray(text) + QLatin1Char('"')
                : QStringLiteral("null");
}

void printUsb()
{
    libusb_context *context = nullptr;
    if (libusb_init(&context) != 0)
        return;
    libusb_device **list = nullptr;
    const ssize_t count = libusb_get_device_list(context, &list);
    for (ssize_t index = 0; index < count; ++index) {
        libusb_device_descriptor descriptor{};
        libusb_get_device_descriptor(list[index], &descriptor);
        out() << "usb " << QString::number(descriptor.idVendor, 16) << ':'
              << QString::number(descriptor.idProduct, 16) << " bcdUSB "
              << QString::number(descriptor.bcdUSB, 16) << " class " << descriptor.bDeviceClass << " max0 "
              << descriptor.bMaxPacketSize0 << " speed " << libusb_get_device_speed(list[index])
              << " strings " << descriptor.iManufacturer << descriptor.iProduct << descriptor.iSerialNumber
              << '\n';
    }
    libusb_free_device_list(list, 1);
    libusb_exit(context);
}

/// Returns the path of the first node that is of the model's.
QByteArray printHid(int vendor)
{
    QByteArray path;
    hid_device_info *all = hid_enumerate(0, 0);
    for (const hid_device_info *one = all; one; one = one->next) {
        out() << "hid " << QString::number(one->vendor_id, 16) << ':' << QString::number(one->product_id, 16)
              << ' ' << one->path << " interface " << one->interface_number << " usage "
              << QString::number(one->usage_page, 16) << '/' << one->usage << " release "
              << QString::number(one->release_number, 16) << " manufacturer "
              << wide(one->manufacturer_string) << " product " << wide(one->product_string) << " serial "
              << wide(one->serial_number) << '\n';
        if (path.isEmpty() && one->vendor_id == vendor)
            path = one->path;
    }
    hid_free_enumeration(all);
    return path;
}

void printWrite(const char *what, hid_device *device, const QByteArray &report)
{
    QElapsedTimer clock;
    clock.start();
    errno = 0;
    const int count = hid_write(device, reinterpret_cast<const unsigned char *>(report.constData()),
                                static_cast<std::size_t>(report.size()));
    const int problem = errno;
    out() << "write " << what << ": " << count;
    if (count < 0)
        out() << ", errno " << strerror(problem) << ", hid_error " << wide(hid_error(device));
    out() << ", " << (clock.elapsed() < 5 ? "at once" : clock.elapsed() < 500 ? "soon" : "late") << '\n';
}

int vendorOf(const QJsonObject &device)
{
    return device.value(QLatin1String("application")).toObject().value(QLatin1String("vendorId")).toInt();
}

QByteArray command(int size)
{
    return (QByteArray::fromHex("04") + "CRT" + QByteArray(2, '\0') + "APPNEW")
        .leftJustified(size, '\0', true);
}

bool isListed(int vendor, int product)
{
    hid_device_info *all =
        hid_enumerate(static_cast<unsigned short>(vendor), static_cast<unsigned short>(product));
    const bool found = all != nullptr;
    hid_free_enumeration(all);
    return found;
}

bool hasBootloader()
{
    libusb_context *context = nullptr;
    libusb_init(&context);
    libusb_device **list = nullptr;
    const ssize_t count = libusb_get_device_list(context, &list);
    bool found = false;
    for (ssize_t index = 0; index < count; ++index) {
        libusb_device_descriptor descriptor{};
        libusb_get_device_descriptor(list[index], &descriptor);
        found = found || (descriptor.idVendor == 0x33C3 && descriptor.idProduct == 0x8899);
    }
    libusb_free_device_list(list, 1);
    libusb_exit(context);
    return found;
}

/// Looks at the bus from a child process of the controller's environment.
int look(const QStringList &arguments)
{
    BusClient bus;
    if (!bus.connectToOwnBus())
        return 1;
    const QString model = arguments.value(0);
    const int vendor = vendorOf(ModelOnBus::application(model));
    printUsb();
    const QByteArray path = printHid(vendor);
    hid_device *device = hid_open_path(path.constData());
    out() << "open: " << (device ? "ok" : "failed") << '\n';
    if (!device)
        return 1;
    printWrite("of 1 byte", device, QByteArray(1, '\4'));
    printWrite("of 512 bytes", device, command(512));
    printWrite("of 16385 bytes", device, command(16385));
    printWrite("of 0 bytes", device, QByteArray());
    printWrite("with report id 9", device, QByteArray(1, '\11') + QByteArray(512, '\0'));
    // The kernel hands a report on before the device has looked at it.
    pollUntil([&] { return bus.device(model).value(QLatin1String("reports")).toArray().size() >= 2; }, 5000,
              10);
    out() << "reports so far " << bus.device(model).value(QLatin1String("reports")).toArray().size() << '\n';
    QElapsedTimer clock;
    clock.start();
    printWrite("of 513 bytes", device, command(513));
    const bool left = pollUntil([&] { return !isListed(vendor, 0); }, eventLimitMs, 1);
    out() << "left: " << left << " after " << clock.elapsed() << " ms\n";
    printWrite("after it left", device, command(513));
    const bool back = pollUntil([] { return hasBootloader(); }, eventLimitMs, 1);
    out() << "bootloader: " << back << " after " << clock.elapsed() << " ms\n";
    printWrite("to the old handle", device, command(513));
    hid_close(device);
    printUsb();
    printHid(vendor);
    out() << "state " << bus.device(model).value(QLatin1String("state")).toString() << '\n';
    out().flush();
    hid_exit();
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.value(0) == QLatin1String("look"))
        return look(arguments.mid(1));
    const QTemporaryDir folder;
    const QString model = QStringLiteral("DevMah");
    const QString description = folder.filePath(QStringLiteral("bus.json"));
    QJsonObject named = ModelOnBus::application(model);
    named.insert(QStringLiteral("manufacturer"), QStringLiteral("Quillmarsh"));
    named.insert(QStringLiteral("product"), model);
    named.insert(QStringLiteral("serial"), QStringLiteral("0001"));
    WholeFile::write(description,
                     ModelOnBus::describe({named, ModelOnBus::application(QStringLiteral("DevMaa"))}));
    BusSession bus;
    const bool started = arguments.value(0) == QLatin1String("gadget")
                             ? bus.startController({BuildPaths::gadgetBusController(),
                                                    QStringLiteral("--description"), description})
                             : bus.start(description);
    const Launch launch{QCoreApplication::applicationFilePath(),
                        {QStringLiteral("look"), model},
                        folder.path(),
                        QProcessEnvironment::systemEnvironment(),
                        folder.filePath(QStringLiteral("stdout")),
                        folder.filePath(QStringLiteral("stderr"))};
    if (!started || !bus.run(launch)) {
        out() << "FAILED: " << bus.errorText() << '\n';
        return 1;
    }
    const bool ended = bus.waitForExit(6 * eventLimitMs).has_value();
    out() << QString::fromUtf8(WholeFile::read(launch.stdoutFile))
          << QString::fromUtf8(WholeFile::read(launch.stderrFile));
    return ended ? 0 : 1;
}
