#include "simulator/bus/UmockdevBus_linux.h"

#include "simulator/bus/UmockdevNode_linux.h"
#include "simulator/bus/UsbRecords.h"

#include <QCoreApplication>
#include <QThread>

// GLib has a struct member named like Qt's keyword.
#undef signals
#include <umockdev.h>

#include <sys/stat.h>
#include <unistd.h>

#include <map>

namespace {

constexpr int hidrawMajor = 240;
constexpr int usbMajor = 189;
// Fixed width, so that the order of the names is the order of the numbers.
constexpr int lastPort = 255;

// umockdev rejects device records with lower-case hex digits.
QByteArray hexDump(const QByteArray &bytes)
{
    return bytes.toHex().toUpper();
}

QByteArray usbNumber(int address)
{
    return QByteArray::number(usbMajor) + ':' + QByteArray::number(address - 1);
}

/// Makes umockdev create its testbed in /tmp if TMPDIR is too long. The testbed's sockets are deep in its
/// folder, and the path of a socket has at most 107 bytes.
void keepSocketNamesShort()
{
    constexpr int longestPlace = 48;
    if (qgetenv("TMPDIR").size() > longestPlace)
        qputenv("TMPDIR", "/tmp");
}

QByteArray hex4(int value)
{
    return QByteArray::number(value, 16).rightJustified(4, '0');
}

int busOf(const BusPresenter::Device &device)
{
    return device.ports.isEmpty() ? 1 : device.ports.section(QLatin1Char('-'), 0, 0).toInt();
}

/// Returns the name of the device's folder, by which libusb knows its ports.
QByteArray nameOf(const BusPresenter::Device &device)
{
    return device.ports.isEmpty() ? "1-" + QByteArray::number(lastPort - device.position)
                                  : device.ports.toLatin1();
}

/// Returns a folder around the device's own for ports that do not stand in bus order themselves: libusb lists
/// devices against the order of their paths.
QByteArray orderOf(const BusPresenter::Device &device)
{
    if (device.ports.isEmpty())
        return {};
    return "/order-" + QByteArray::number(lastPort - device.position);
}

/// Returns the name of an interface's folder. Where ports were given each node has one of its own, in their
/// order, as its number may be unknown.
QByteArray interfaceName(const BusPresenter::Device &device, int index)
{
    const int number = device.nodes.at(index).number;
    const bool isNumbered = device.ports.isEmpty() && number >= 0;
    return nameOf(device) + ":1." + QByteArray::number(isNumbered ? number : 100 + index);
}

} // namespace

struct UmockdevBus::Private
{
    struct Shown
    {
        QByteArray usb;
        int address = 0;
        QVector<QByteArray> interfaces;
        QVector<QByteArray> hids;
        QVector<QByteArray> hidraws;
        QVector<QByteArray> nodeNames;
    };

    UMockdevTestbed *testbed = nullptr;
    QByteArray root;
    QByteArray controller = "/devices/platform/sim_hcd.0/usb1";
    QString error;
    WriteHandler handler;
    std::unique_ptr<QObject> context = std::make_unique<QObject>();
    QHash<int, Shown> shown;
    std::map<QByteArray, std::unique_ptr<UmockdevNode>> nodes;
    int lastAddress = 1;
    int lastHid = 0;
    int nextMinor = 0;

    QString addRecord(const QByteArray &record) const
    {
        GError *problem = nullptr;
        if (umockdev_testbed_add_from_string(testbed, record.constData(), &problem))
            return QString();
        const QString text = problem ? QString::fromUtf8(problem->message) : QStringLiteral("unknown error");
        g_clear_error(&problem);
        return text;
    }

    int freeAddress()
    {
        // As on a real bus, a device that returns gets a new address.
        for (int tries = 0; tries < 126; ++tries) {
            lastAddress = lastAddress % 127 + 1;
            bool taken = lastAddress == 1;
            for (const Shown &device : qAsConst(shown))
                taken = taken || device.address == lastAddress;
            if (!taken)
                break;
        }
        return lastAddress;
    }

    QString addUsb(Shown &device, const Device &description)
    {
        const int address = device.address;
        const QByteArray number = QByteArray::number(address).rightJustified(3, '0');
        const QByteArray bus = QByteArray::number(busOf(description)).rightJustified(3, '0');
        const QByteArray data = UsbRecords::descriptors(description);
        QByteArray record =
            "P: " + device.usb + "\nN: bus/usb/" + bus + '/' + number + '=' + hexDump(data) +
            "\nE: DEVNAME=/dev/bus/usb/" + bus + '/' + number +
            "\nE: DEVTYPE=usb_device\nE: SUBSYSTEM=usb\nE: DRIVER=usb\nE: MAJOR=" +
            QByteArray::number(usbMajor) + "\nE: MINOR=" + QByteArray::number(address - 1) +
            "\nE: BUSNUM=" + bus + "\nE: DEVNUM=" + number +
            "\nE: PRODUCT=" + QByteArray::number(description.ids.vendorId, 16) + '/' +
            QByteArray::number(description.ids.productId, 16) +
            "/100\nA: dev=" + QByteArray::number(usbMajor) + ':' + QByteArray::number(address - 1) +
            "\\n\nA: busnum=" + QByteArray::number(busOf(description)) +
            "\\n\nA: devnum=" + QByteArray::number(address) +
            "\\n\nA: speed=480\\n\nA: bConfigurationValue=1\\n\nA: bcdDevice=0100\\n\nA: idVendor=" +
            hex4(description.ids.vendorId) + "\\n\nA: idProduct=" + hex4(description.ids.productId) + "\\n\n";
        const auto addText = [&record](const char *name, const QString &text) {
            if (!text.isEmpty())
                record += "A: " + QByteArray(name) + '=' + text.toUtf8() + "\\n\n";
        };
        addText("manufacturer", description.manufacturer);
        addText("product", description.product);
        addText("serial", description.serial);
        record += "H: descriptors=" + hexDump(data) + "\n\n";
        return addRecord(record);
    }

    QString addInterface(const QByteArray &path, int number) const
    {
        const QByteArray told =
            number < 0
                ? QByteArray()
                : "A: bInterfaceNumber=" + QByteArray::number(number, 16).rightJustified(2, '0') + "\\n\n";
        return addRecord(
            "P: " + path + "\nE: DEVTYPE=usb_interface\nE: SUBSYSTEM=usb\nE: DRIVER=usbhid\n" + told +
            "A: bInterfaceClass=03\\n\nA: bInterfaceSubClass=00\\n\nA: bInterfaceProtocol=00\\n\n\n");
    }

    QString addHid(const QByteArray &path, const Device &device, const HidNodeDescription &node) const
    {
        const QByteArray ids = "0003:" + hex4(device.ids.vendorId).rightJustified(8, '0').toUpper() + ':' +
                               hex4(device.ids.productId).rightJustified(8, '0').toUpper();
        return addRecord("P: " + path + "\nE: DRIVER=hid-generic\nE: HID_ID=" + ids +
                         "\nE: HID_NAME=" + device.product.toUtf8() +
                         "\nE: HID_PHYS=usb-sim_hcd.0\nE: HID_UNIQ=" + device.serial.toUtf8() +
                         "\nE: SUBSYSTEM=hid\nH: report_descriptor=" +
                         hexDump(UsbRecords::reportDescriptor(node)) + "\n\n");
    }

    QString attach(int id, int index, const HidNodeDescription &node)
    {
        const QByteArray name = node.node.toUtf8();
        std::unique_ptr<UmockdevNode> &entry = nodes[name];
        if (!entry) {
            entry = std::make_unique<UmockdevNode>(id, index, UsbRecords::reportDescriptor(node), handler,
                                                   *context);
            const QString problem = node.openable ? entry->attach(testbed, "/dev/" + name) : QString();
            if (!problem.isEmpty())
                return problem;
        }
        entry->appear();
        return QString();
    }

    /// Adds a node. An enumeration must not find an incomplete node, because its path would be null. The node
    /// is therefore created in a class with another name and moved to the enumerated class in the last step.
    QString addHidraw(const QByteArray &path, const QByteArray &hid, const HidNodeDescription &node)
    {
        const QByteArray name = node.node.toUtf8();
        const QByteArray number = QByteArray::number(hidrawMajor) + ':' + QByteArray::number(nextMinor);
        QByteArray record = "P: " + path + "\n";
        if (!node.pathless)
            record += "N: " + name + "=00\nE: DEVNAME=/dev/" + name + "\nA: dev=" + number + "\\n\n";
        record +=
            "E: MAJOR=" + QByteArray::number(hidrawMajor) + "\nE: MINOR=" + QByteArray::number(nextMinor) +
            "\nE: SUBSYSTEM=hidrawnew\nL: device=../../../" + hid.mid(hid.lastIndexOf('/') + 1) + "\n\n";
        ++nextMinor;
        const QString problem = addRecord(record);
        if (!problem.isEmpty())
            return problem;

        const QByteArray link = root + "/sys" + path + "/subsystem";
        char target[4096] = {};
        if (readlink(link.constData(), target, sizeof target - 1) < 0)
            return QStringLiteral("no subsystem link at ") + QString::fromUtf8(link);
        const QByteArray final = QByteArray(target).replace("hidrawnew", "hidraw");
        const QByteArray folder = root + "/sys/class/hidraw";
        mkdir(folder.constData(), 0755);
        unlink(link.constData());
        unlink((root + "/sys/class/hidrawnew/" + name).constData());
        if (symlink(final.constData(), link.constData()) != 0 ||
            symlink(("../.." + path).constData(), (folder + '/' + name).constData()) != 0)
            return QStringLiteral("cannot link the node ") + node.node;
        umockdev_testbed_uevent(testbed, ("/sys" + path).constData(), "add");
        return QString();
    }

    /// `number` is the major and minor number, empty for a device without one.
    void removeDevice(const QByteArray &path, const QByteArray &number = QByteArray()) const
    {
        // The event comes first, because afterwards it would have no properties.
        umockdev_testbed_uevent(testbed, ("/sys" + path).constData(), "remove");
        umockdev_testbed_remove_device(testbed, ("/sys" + path).constData());
        // The testbed leaves this link, and would fail to make it for the next device of the number:
        // addresses come again after 127 devices.
        if (!number.isEmpty())
            unlink((root + "/sys/dev/char/" + number).constData());
    }
};

UmockdevBus::UmockdevBus(bool rootHub) : d(std::make_unique<Private>())
{
    keepSocketNamesShort();
    d->testbed = umockdev_testbed_new();
    // Not asked before the first testbed exists, because umockdev would remember the answer "no".
    if (!umockdev_in_mock_environment()) {
        d->error = QStringLiteral("not under umockdev-wrapper: programs would see the real bus");
        return;
    }
    gchar *root = umockdev_testbed_get_root_dir(d->testbed);
    d->root = root;
    g_free(root);
    if (rootHub) {
        Device hub;
        hub.ids = {0x1D6B, 0x0002};
        hub.deviceClass = 9;
        hub.product = QStringLiteral("Simulated host controller");
        Private::Shown shown;
        shown.usb = d->controller;
        shown.address = 1;
        d->error = d->addUsb(shown, hub);
    }
}

UmockdevBus::~UmockdevBus()
{
    // Runs the handlers that are waiting for this thread; no others can arrive later.
    QCoreApplication::sendPostedEvents(d->context.get());
    d->nodes.clear();
    g_object_unref(d->testbed);
}

QString UmockdevBus::startError() const
{
    return d->error;
}

void UmockdevBus::setWriteHandler(WriteHandler handler)
{
    d->handler = std::move(handler);
}

QString UmockdevBus::add(int id, const Device &device)
{
    Private::Shown shown;
    shown.usb = d->controller + orderOf(device) + '/' + nameOf(device);
    shown.address = d->freeAddress();
    QString problem = d->addUsb(shown, device);
    for (int index = 0; index < device.nodes.size() && problem.isEmpty(); ++index) {
        const HidNodeDescription &node = device.nodes.at(index);
        const QByteArray interface = shown.usb + '/' + interfaceName(device, index);
        if (!shown.interfaces.contains(interface)) {
            problem = d->addInterface(interface, node.number);
            shown.interfaces.append(interface);
        }
        const QByteArray hid = interface + "/0003:" + hex4(device.ids.vendorId).toUpper() + ':' +
                               hex4(device.ids.productId).toUpper() + '.' + hex4(++d->lastHid).toUpper();
        const QByteArray hidraw = hid + "/hidraw/" + node.node.toUtf8();
        if (problem.isEmpty())
            problem = d->addHid(hid, device, node);
        if (problem.isEmpty())
            problem = d->attach(id, index, node);
        if (problem.isEmpty())
            problem = d->addHidraw(hidraw, hid, node);
        shown.hids.append(hid);
        shown.hidraws.append(hidraw);
        shown.nodeNames.append(node.node.toUtf8());
    }
    d->shown.insert(id, shown);
    return problem;
}

void UmockdevBus::remove(int id)
{
    if (!d->shown.contains(id))
        return;
    const Private::Shown shown = d->shown.take(id);
    for (const QByteArray &name : shown.nodeNames) {
        if (const auto node = d->nodes.find(name); node != d->nodes.end())
            node->second->disappear();
        unlink((d->root + "/sys/class/hidraw/" + name).constData());
        unlink((d->root + "/dev/" + name).constData());
    }
    // hidapi reads a node's parents without checking that they still exist. This leaves an enumeration that
    // has already found the node time to finish.
    if (!shown.nodeNames.isEmpty())
        QThread::msleep(10);
    for (const QByteArray &path : shown.hidraws)
        d->removeDevice(path);
    for (const QByteArray &path : shown.hids)
        d->removeDevice(path);
    for (const QByteArray &path : shown.interfaces)
        d->removeDevice(path);
    d->removeDevice(shown.usb, usbNumber(shown.address));
}
