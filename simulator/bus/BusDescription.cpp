#include "simulator/bus/BusDescription.h"

#include "simulator/bus/JsonReader.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace {

constexpr int longestDelayMs = 600000;
constexpr int longestDescriptors = 64 * 1024;

ReportAnswer reportAnswer(JsonReader reader, ReportAnswer answer)
{
    using Action = ReportAnswer::Action;
    using Layout = ReportAnswer::Layout;
    answer.action = reader.choice(
        "action", answer.action,
        {{"bootloader", Action::Bootloader}, {"stay", Action::Stay}, {"vanish", Action::Vanish}});
    answer.layout = reader.choice("layout", answer.layout, {{"A", Layout::A}, {"B", Layout::B}});
    answer.leaveAfterMs = reader.number("leaveAfterMs", answer.leaveAfterMs, 0, longestDelayMs);
    answer.afterMs = reader.number("afterMs", answer.afterMs, 0, longestDelayMs);
    reader.rejectUnknownKeys();
    return answer;
}

ResetAnswer resetAnswer(JsonReader reader, ResetAnswer answer)
{
    using Action = ResetAnswer::Action;
    answer.action =
        reader.choice("action", answer.action,
                      {{"return", Action::Return}, {"stay", Action::Stay}, {"vanish", Action::Vanish}});
    answer.leaveAfterMs = reader.number("leaveAfterMs", answer.leaveAfterMs, 0, longestDelayMs);
    answer.afterMs = reader.number("afterMs", answer.afterMs, 0, longestDelayMs);
    reader.rejectUnknownKeys();
    return answer;
}

WriteBehaviour writeBehaviour(JsonReader reader, WriteBehaviour writes)
{
    using Answer = WriteBehaviour::Answer;
    writes.answer = reader.choice("answer", writes.answer,
                                  {{"ok", Answer::Ok},
                                   {"short", Answer::Short},
                                   {"refused", Answer::Refused},
                                   {"error", Answer::Error}});
    writes.count = reader.number("count", writes.count, 0, 512);
    reader.rejectUnknownKeys();
    return writes;
}

void readBehaviour(JsonReader &reader, DeviceDescription &device)
{
    device.onReport = reportAnswer(reader.object("onReport"), device.onReport);
    device.onReset = resetAnswer(reader.object("onReset"), device.onReset);
    device.writes = writeBehaviour(reader.object("writes"), device.writes);
}

UsbIds usbIds(JsonReader reader, UsbIds ids)
{
    ids.vendorId = static_cast<quint16>(reader.number("vendorId", ids.vendorId, 1, 0xFFFF));
    ids.productId = static_cast<quint16>(reader.number("productId", ids.productId, 0, 0xFFFF));
    reader.rejectUnknownKeys();
    return ids;
}

HidNodeDescription hidNode(JsonReader reader)
{
    HidNodeDescription node;
    node.number = reader.number("number", node.number, -1, 31);
    node.collection = reader.number("collection", node.collection, 1, 15);
    node.collections = reader.number("collections", node.collections, 1, 15);
    node.node = reader.text("node", node.node);
    node.acceptsReport = reader.flag("acceptsReport", node.acceptsReport);
    node.openable = reader.flag("openable", node.openable);
    node.pathless = reader.flag("pathless", node.pathless);
    node.reportDescriptor = reader.bytes("reportDescriptor", BusDescription::maximumReportDescriptor);
    // The node becomes a file, and its name is part of other file names.
    static const QRegularExpression fileName(QStringLiteral("^([A-Za-z0-9_][A-Za-z0-9_.&-]*)?\\z"));
    if (!fileName.match(node.node).hasMatch())
        reader.fail(QStringLiteral("node \"%1\" is no plain file name").arg(node.node));
    reader.rejectUnknownKeys();
    return node;
}

DeviceDescription device(JsonReader reader, int index)
{
    using Start = DeviceDescription::Start;
    DeviceDescription device;
    device.key = reader.text("key", QString());
    if (device.key.isEmpty())
        reader.fail(QStringLiteral("a device needs a \"key\""));
    device.name = reader.text("name", device.key);
    if (!reader.has("application"))
        reader.fail(QStringLiteral("a device needs its \"application\" ids"));
    device.application = usbIds(reader.object("application"), device.application);
    device.bootloader = usbIds(reader.object("bootloader"), device.bootloader);
    device.position = reader.number("position", index, 0, BusDescription::maximumPosition);
    device.ports = reader.text("ports", QString());
    if (!device.ports.isEmpty() && !BusDescription::isPorts(device.ports))
        reader.fail(QStringLiteral("ports \"%1\" are none such as \"1-2.3\"").arg(device.ports));
    device.deviceClass = reader.number("class", 0, 0, 255);
    device.descriptors = reader.bytes("descriptors", longestDescriptors);
    device.start = reader.choice(
        "start", device.start,
        {{"absent", Start::Absent}, {"application", Start::Application}, {"bootloader", Start::Bootloader}});
    device.manufacturer = reader.text("manufacturer", QStringLiteral("Simulated"));
    device.product = reader.text("product", device.name);
    device.serial = reader.text("serial", QString());
    device.programmable = reader.flag("programmable", device.programmable);
    if (reader.has("interfaces")) {
        for (const JsonReader &entry : reader.objects("interfaces"))
            device.nodes.append(hidNode(entry));
    } else {
        HidNodeDescription only;
        only.acceptsReport = true;
        device.nodes.append(only);
    }
    readBehaviour(reader, device);
    reader.rejectUnknownKeys();
    return device;
}

QString clash(const QVector<DeviceDescription> &devices)
{
    QSet<QString> keys;
    QSet<QString> nodes;
    QSet<int> positions;
    QSet<QString> ports;
    for (const DeviceDescription &device : devices) {
        if (!device.ports.isEmpty() && ports.contains(device.ports))
            return QStringLiteral("two devices are connected at \"%1\"").arg(device.ports);
        ports.insert(device.ports);
        if (keys.contains(device.key))
            return QStringLiteral("two devices have the key \"%1\"").arg(device.key);
        keys.insert(device.key);
        if (positions.contains(device.position))
            return QStringLiteral("two devices have the position %1").arg(device.position);
        positions.insert(device.position);
        for (const HidNodeDescription &node : device.nodes) {
            if (node.node.isEmpty())
                continue;
            if (nodes.contains(node.node))
                return QStringLiteral("two interfaces have the node \"%1\"").arg(node.node);
            nodes.insert(node.node);
        }
    }
    return QString();
}

void assignNodeNames(QVector<DeviceDescription> &devices)
{
    QSet<QString> taken;
    for (const DeviceDescription &device : devices) {
        for (const HidNodeDescription &node : device.nodes)
            taken.insert(node.node);
    }
    int next = 0;
    for (DeviceDescription &device : devices) {
        for (HidNodeDescription &node : device.nodes) {
            while (node.node.isEmpty()) {
                const QString candidate = QStringLiteral("hidraw%1").arg(next++);
                if (!taken.contains(candidate))
                    node.node = candidate;
            }
        }
    }
}

} // namespace

QString DeviceDescription::applyBehaviour(const QJsonObject &changes)
{
    QString error;
    JsonReader reader(changes, key, &error);
    DeviceDescription changed = *this;
    readBehaviour(reader, changed);
    reader.rejectUnknownKeys();
    if (error.isEmpty())
        *this = changed;
    return error;
}

std::optional<BusDescription> BusDescription::parse(const QByteArray &json, QString *error)
{
    QString problem;
    QJsonParseError syntax{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &syntax);
    BusDescription bus;
    if (syntax.error != QJsonParseError::NoError) {
        problem = QStringLiteral("no JSON: %1 at byte %2").arg(syntax.errorString()).arg(syntax.offset);
    } else if (!document.isObject()) {
        problem = QStringLiteral("the description must be a JSON object");
    } else {
        JsonReader reader(document.object(), QStringLiteral("bus"), &problem);
        bus.rootHub = reader.flag("rootHub", bus.rootHub);
        for (const JsonReader &entry : reader.objects("devices"))
            bus.devices.append(device(entry, bus.devices.size()));
        reader.rejectUnknownKeys();
    }
    if (problem.isEmpty())
        problem = bus.complete();
    if (error)
        *error = problem;
    if (!problem.isEmpty())
        return std::nullopt;
    return bus;
}

QString BusDescription::complete()
{
    QString problem = clash(devices);
    if (!problem.isEmpty())
        return problem;
    std::sort(devices.begin(), devices.end(),
              [](const auto &left, const auto &right) { return left.position < right.position; });
    assignNodeNames(devices);
    return {};
}

bool BusDescription::isPorts(const QString &text)
{
    // It becomes the name of a folder. USB allows seven hubs and devices in a row.
    static const QRegularExpression ports(
        QStringLiteral("^[1-9][0-9]{0,2}-[1-9][0-9]{0,2}(\\.[1-9][0-9]{0,2}){0,6}\\z"));
    return ports.match(text).hasMatch();
}
