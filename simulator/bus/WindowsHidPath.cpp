#include "simulator/bus/WindowsHidPath.h"

#include "simulator/bus/UsbRecords.h"

#include <algorithm>

namespace {

QByteArray hex(int value, int width)
{
    return QByteArray::number(value, 16).rightJustified(width, '0');
}

bool hasSeveralCollections(const BusPresenter::Device &device, const HidNodeDescription &node)
{
    const auto sharers =
        std::count_if(device.nodes.begin(), device.nodes.end(),
                      [&node](const HidNodeDescription &other) { return other.number == node.number; });
    return sharers > 1 || node.collection > 1 || node.collections > 1;
}

} // namespace

int WindowsHidPath::collectionsOf(const HidNodeDescription &node)
{
    return std::max({1, node.collections, node.windowsPaths.size()});
}

QByteArray WindowsHidPath::of(const BusPresenter::Device &device, int node, int collection)
{
    const HidNodeDescription &described = device.nodes.at(node);
    if (collection <= described.windowsPaths.size())
        return described.windowsPaths.at(collection - 1).toUtf8();
    const int ordinal = described.collection + collection - 1;
    QByteArray path =
        "\\\\?\\hid#vid_" + hex(device.ids.vendorId, 4) + "&pid_" + hex(device.ids.productId, 4);
    if (UsbRecords::interfaceNumbers(device).size() > 1)
        path += "&mi_" + hex(described.number, 2);
    if (hasSeveralCollections(device, described))
        path += "&col" + hex(ordinal, 2);
    // The instance id: it is always the same for the same port and interface.
    path += "#7&2a" + hex(device.position, 2) + hex(described.number, 2) + "&0&" + hex(ordinal - 1, 4);
    return path + "#{4d1e55b2-f16f-11cf-88cb-001111000030}";
}
