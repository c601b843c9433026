#include "simulator/report/ReportedDevices.h"

#include "simulator/report/ReportedHidPath.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

constexpr int deviceDescriptorBytes = 18;
constexpr int configurationHeaderBytes = 9;
constexpr int longestConfiguration = 0xFFFF;
constexpr int mostConfigurations = 8;
constexpr int mostNodes = 200;
constexpr int longestPath = 1024;
constexpr int hubClass = 9;
constexpr UsbIds rootHub{0x1D6B, 0x0002};

bool isSame(const UsbIds &left, const UsbIds &right)
{
    return left.vendorId == right.vendorId && left.productId == right.productId;
}

/// Reads four hexadecimal digits.
quint16 id(JsonReader &entry, const char *key)
{
    const QByteArray bytes = entry.bytes(key, 2);
    if (bytes.size() != 2) {
        entry.fail(QStringLiteral("\"%1\" must be four hexadecimal digits").arg(QLatin1String(key)));
        return 0;
    }
    return static_cast<quint16>((static_cast<quint8>(bytes.at(0)) << 8) | static_cast<quint8>(bytes.at(1)));
}

UsbIds ids(JsonReader &entry)
{
    const quint16 vendorId = id(entry, "vendorId");
    return {vendorId, id(entry, "productId")};
}

/// Whether the bytes are a configuration that says how long it is.
bool isConfiguration(const QByteArray &bytes)
{
    const auto byte = [&bytes](int at) {
        return static_cast<int>(static_cast<quint8>(bytes.at(at)));
    };
    return bytes.size() >= configurationHeaderBytes && byte(1) == 2 &&
           (byte(2) | (byte(3) << 8)) == bytes.size();
}

/// A configuration without interfaces, in the place of one that could not be read.
QByteArray emptyConfiguration(int number)
{
    return QByteArray::fromRawData("\x09\x02\x09\x00\x00", 5) + static_cast<char>(number) +
           QByteArray::fromRawData("\x00\x80\x32", 3);
}

QString position(JsonReader &entry)
{
    QString text = entry.text("position", QString());
    if (!text.isEmpty() && !BusDescription::isPorts(text))
        entry.fail(QStringLiteral("the position \"%1\" is none such as \"1-2.3\"").arg(text));
    return text;
}

bool bears(const HidNodeDescription &node, const QString &marker)
{
    return std::any_of(node.windowsPaths.begin(), node.windowsPaths.end(),
                       [&](const QString &path) { return path.contains(marker, Qt::CaseInsensitive); });
}

} // namespace

QString ReportedDevices::freeKey(const QString &wanted)
{
    QString key = wanted;
    for (int ordinal = 2; m_keys.contains(key); ++ordinal)
        key = wanted + QLatin1Char('-') + QString::number(ordinal);
    m_keys.insert(key);
    return key;
}

void ReportedDevices::addUsb(JsonReader entry)
{
    Device device;
    device.description.application = ids(entry);
    device.description.deviceClass = entry.number("class", 0, 0, 255);
    device.isHub = device.description.deviceClass == hubClass;
    device.isDetailed = entry.has("descriptor");
    if (device.isDetailed)
        readDetails(entry, device);
    else
        device.description.key = freeKey(QStringLiteral("other"));
    device.description.name = device.description.key;
    device.description.product = device.description.name;
    entry.rejectUnknownKeys();
    m_devices.append(device);
    // The first one beyond the limit is enough to be refused.
    if (m_devices.size() > BusDescription::maximumPosition + 1)
        entry.fail(QStringLiteral("more than %1 devices cannot be on one bus")
                       .arg(BusDescription::maximumPosition + 1));
}

void ReportedDevices::readDetails(JsonReader &entry, Device &device)
{
    DeviceDescription &description = device.description;
    description.ports = position(entry);
    const QString model = entry.text("model", QString());
    const bool isBootloader = entry.flag("bootloader", false);
    static const QRegularExpression name(QStringLiteral("^[A-Za-z0-9_ -]{0,64}\\z"));
    if (!name.match(model).hasMatch())
        entry.fail(QStringLiteral("\"model\" is no name of a model"));
    if (m_firstModel.isEmpty())
        m_firstModel = model;
    description.key = freeKey(isBootloader      ? QStringLiteral("bootloader")
                              : model.isEmpty() ? QStringLiteral("device")
                                                : model);
    description.programmable = entry.flag("iap", false);
    device.marker = entry.text("marker", QString());
    if (isBootloader) {
        description.start = DeviceDescription::Start::Bootloader;
        description.bootloader = description.application;
        // Nobody knows what it would come back as.
        description.onReset.action = ResetAnswer::Action::Stay;
    }
    description.descriptors = entry.bytes("descriptor", deviceDescriptorBytes);
    if (description.descriptors.size() != deviceDescriptorBytes)
        entry.fail(QStringLiteral("\"descriptor\" must have %1 bytes").arg(deviceDescriptorBytes));
    const QVector<QByteArray> configurations =
        entry.byteTexts("configurations", longestConfiguration, mostConfigurations);
    for (const QByteArray &configuration : configurations) {
        if (!isConfiguration(configuration))
            entry.fail(QStringLiteral("a configuration is not as long as it says"));
        description.descriptors += configuration;
    }
    // libusb does not list a device that promises more of them than it sends.
    const int promised = description.descriptors.size() < deviceDescriptorBytes
                             ? 0
                             : static_cast<quint8>(description.descriptors.at(deviceDescriptorBytes - 1));
    for (int number = configurations.size(); number < promised && number < mostConfigurations; ++number)
        description.descriptors += emptyConfiguration(number + 1);
    // For people; the bytes say the same.
    entry.objects("interfaces");
}

void ReportedDevices::addHid(JsonReader entry)
{
    const UsbIds of = ids(entry);
    const QString at = position(entry);
    const bool hasPath = !entry.isNull("path");
    const QString path = hasPath ? entry.text("path", QString()) : QString();
    const QString markers = entry.text("markers", QString());
    HidNodeDescription node;
    node.number = entry.number("interface", -1, -1, 255);
    node.pathless = !hasPath;
    node.openable = entry.flag("opens", true);
    node.reportDescriptor = entry.bytes("reportDescriptor", BusDescription::maximumReportDescriptor);
    entry.number("usagePage", 0, 0, 0xFFFF);
    entry.number("usage", 0, 0, 0xFFFF);
    entry.rejectUnknownKeys();
    if (path.size() > longestPath || markers.size() > longestPath)
        entry.fail(QStringLiteral("a path is longer than any"));
    if (++m_nodes > mostNodes)
        entry.fail(QStringLiteral("more than %1 HID interfaces cannot be shown").arg(mostNodes));
    if (!m_error->isEmpty())
        return;

    node.node = ReportedHidPath::nodeName(path);
    const bool isDeviceFile = !node.node.isEmpty();
    const QStringList words = ReportedHidPath::wordsIn(path + QLatin1Char(' ') + markers);
    if (!isDeviceFile) {
        node.node = ReportedHidPath::nodeName(words, m_nodes);
        node.number = ReportedHidPath::numberIn(words);
    }
    node.windowsPaths =
        QStringList(isDeviceFile || path.isEmpty()
                        ? ReportedHidPath::windowsPath(of.vendorId, of.productId, words, m_nodes)
                        : path);
    const QString place = isDeviceFile ? node.node : words.join(QLatin1Char('&'));
    if (Device *device = deviceOf(of, at, place))
        addNode(*device, node, place);
}

/// Returns the device that an interface belongs to. Where its position is not known: the first device with
/// these ids that has no interface at the same place yet, or the last one. Null for an interface that is not
/// on the USB bus: the program never looks at it.
ReportedDevices::Device *ReportedDevices::deviceOf(const UsbIds &ids, const QString &position,
                                                   const QString &place)
{
    Device *last = nullptr;
    for (Device &device : m_devices) {
        if (!device.isDetailed || !isSame(device.description.application, ids))
            continue;
        last = &device;
        if (position.isEmpty() ? !device.places.contains(place) : device.description.ports == position)
            break;
    }
    return last;
}

void ReportedDevices::addNode(Device &device, HidNodeDescription node, const QString &place)
{
    device.places.insert(place);
    QVector<HidNodeDescription> &nodes = device.description.nodes;
    const bool isFurtherCollection =
        !node.pathless && !nodes.isEmpty() && !nodes.last().pathless && nodes.last().node == node.node;
    if (isFurtherCollection) {
        nodes.last().windowsPaths += node.windowsPaths;
        ++nodes.last().collections;
        return;
    }
    nodes.append(node);
}

/// Hands the places of hubs on the way to known devices to hubs of which only ids and class are known.
void ReportedDevices::giveHubsTheirPorts()
{
    QStringList missing;
    for (const Device &device : qAsConst(m_devices)) {
        QString way = device.description.ports;
        while (way.contains(QLatin1Char('.'))) {
            way = way.left(way.lastIndexOf(QLatin1Char('.')));
            if (!m_ports.contains(way) && !missing.contains(way))
                missing.append(way);
        }
    }
    std::sort(missing.begin(), missing.end());
    for (Device &device : m_devices) {
        if (missing.isEmpty() || device.isDetailed || !device.isHub)
            continue;
        device.description.ports = missing.takeFirst();
        m_ports.insert(device.description.ports);
    }
}

void ReportedDevices::giveOthersFreePorts()
{
    constexpr int highestPort = 255;
    int port = highestPort;
    for (Device &device : m_devices) {
        QString &ports = device.description.ports;
        while (ports.isEmpty() && port > 0) {
            const QString free = QStringLiteral("1-%1").arg(port--);
            if (!m_ports.contains(free))
                ports = free;
        }
    }
}

BusDescription ReportedDevices::take()
{
    BusDescription bus;
    // The simulated bus has a root hub of its own, which is listed last.
    const auto last = std::find_if(m_devices.rbegin(), m_devices.rend(), [](const Device &device) {
        return !device.isDetailed && isSame(device.description.application, rootHub);
    });
    bus.rootHub = last != m_devices.rend();
    if (bus.rootHub)
        m_devices.erase(std::next(last).base());
    for (const Device &device : qAsConst(m_devices)) {
        if (!device.description.ports.isEmpty())
            m_ports.insert(device.description.ports);
    }
    giveHubsTheirPorts();
    giveOthersFreePorts();
    for (Device &device : m_devices) {
        DeviceDescription &description = device.description;
        description.position = bus.devices.size();
        bool isFirst = true;
        for (HidNodeDescription &node : description.nodes) {
            node.acceptsReport = device.marker.isEmpty() ? isFirst : bears(node, device.marker);
            isFirst = false;
        }
        bus.devices.append(description);
    }
    return bus;
}
