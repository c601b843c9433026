#include "tests/fuzz/Fuzz.h"

#include "simulator/bus/UsbRecords.h"
#include "simulator/report/ReportedBus.h"

#include <QSet>

namespace {

constexpr int mostNodes = 200;

bool isPlainName(const QString &name)
{
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..") &&
           !name.contains(QLatin1Char('/')) && !name.contains(QLatin1Char('\n'));
}

void checkDevice(const DeviceDescription &device)
{
    Fuzz::require(BusDescription::isPorts(device.ports), "a device has its place");
    Fuzz::require(device.position >= 0 && device.position <= BusDescription::maximumPosition,
                  "its place in the order is one of the bus");
    Fuzz::require(device.descriptors.isEmpty() || device.descriptors.size() >= 18,
                  "a device descriptor is whole");
    for (const HidNodeDescription &node : device.nodes) {
        Fuzz::require(isPlainName(node.node), "a node's name is that of a file");
        Fuzz::require(UsbRecords::reportDescriptor(node).size() <= BusDescription::maximumReportDescriptor,
                      "a report descriptor fits");
        Fuzz::require(node.windowsPaths.size() >= 1, "a node has a path on Windows");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Fuzz::silence();
    QString error;
    const std::optional<ReportedBus> reported = ReportedBus::parse(Fuzz::bytes(data, size), &error);
    Fuzz::require(reported.has_value() == error.isEmpty(), "what is refused has a reason");
    if (!reported)
        return 0;
    QSet<QString> ports;
    QSet<QString> nodes;
    int count = 0;
    for (const DeviceDescription &device : reported->bus.devices) {
        checkDevice(device);
        ports.insert(device.ports);
        for (const HidNodeDescription &node : device.nodes)
            nodes.insert(node.node);
        count += device.nodes.size();
    }
    Fuzz::require(ports.size() == reported->bus.devices.size(), "no two devices stand at one place");
    Fuzz::require(nodes.size() == count && count <= mostNodes, "no two nodes have one name");
    return 0;
}
