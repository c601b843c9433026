#include "simulator/bus/UsbRecords.h"

#include <algorithm>

namespace {

void appendWord(QByteArray &bytes, int value)
{
    bytes.append(static_cast<char>(value & 0xFF));
    bytes.append(static_cast<char>((value >> 8) & 0xFF));
}

QByteArray fromList(std::initializer_list<int> values)
{
    QByteArray bytes;
    for (const int value : values)
        bytes.append(static_cast<char>(value));
    return bytes;
}

} // namespace

QVector<int> UsbRecords::interfaceNumbers(const BusPresenter::Device &device)
{
    QVector<int> numbers;
    for (const HidNodeDescription &node : device.nodes) {
        if (node.number >= 0 && !numbers.contains(node.number))
            numbers.append(node.number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

QByteArray UsbRecords::descriptors(const BusPresenter::Device &device)
{
    if (!device.descriptors.isEmpty())
        return device.descriptors;
    QByteArray bytes = fromList({18, 1, 0x00, 0x02, device.deviceClass, 0, 0, 64});
    appendWord(bytes, device.ids.vendorId);
    appendWord(bytes, device.ids.productId);
    bytes += fromList({0x00, 0x01, 1, 2, device.serial.isEmpty() ? 0 : 3, 1});

    QByteArray interfaces;
    const QVector<int> numbers = interfaceNumbers(device);
    for (const int number : numbers) {
        // Interface, its HID descriptor, and one endpoint in each direction.
        interfaces += fromList({9, 4, number, 0, 2, 3, 0, 0, 0});
        interfaces += fromList({9, 0x21, 0x11, 0x01, 0, 1, 0x22});
        appendWord(interfaces, reportDescriptor(1).size());
        interfaces += fromList({7, 5, 0x81 + number % 15, 3, 64, 0, 1});
        interfaces += fromList({7, 5, 0x01 + number % 15, 3, 64, 0, 1});
    }
    bytes += fromList({9, 2});
    appendWord(bytes, 9 + interfaces.size());
    bytes += fromList({numbers.size(), 1, 0, 0x80, 50});
    return bytes + interfaces;
}

QByteArray UsbRecords::reportDescriptor(const HidNodeDescription &node)
{
    return node.reportDescriptor.isEmpty() ? reportDescriptor(node.collections) : node.reportDescriptor;
}

QByteArray UsbRecords::reportDescriptor(int collections)
{
    QByteArray bytes;
    for (int ordinal = 1; ordinal <= collections; ++ordinal) {
        bytes += fromList({0x06, 0x00, 0xFF, 0x09, ordinal, 0xA1, 0x01, // vendor page, usage, collection
                           0x85, 0x04, 0x15, 0x00, 0x26,    0xFF, 0x00, // report id 4, bytes
                           0x75, 0x08, 0x96, 0x00, 0x02,                // 512 of them
                           0x09, 0x01, 0x91, 0x02, 0xC0});              // output, end
    }
    return bytes;
}
