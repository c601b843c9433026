#include "devices/hid/HidMarkers.h"

#include <algorithm>

QString HidMarkers::text(int interfaceNumber, int collection)
{
    QString words;
    if (interfaceNumber >= 0)
        words = QStringLiteral("MI_%1&").arg(interfaceNumber, 2, 16, QLatin1Char('0'));
    words += QStringLiteral("Col%1").arg(collection, 2, 16, QLatin1Char('0'));
    return words;
}

int HidMarkers::topLevelCollections(const QByteArray &reportDescriptor)
{
    // In the HID standard, an item's prefix byte contains the size in its two low bits, tag and type above.
    // Only the tags that open and close collections matter here.
    constexpr int longItem = 0xFE;
    constexpr int collection = 0xA0;
    constexpr int endCollection = 0xC0;
    int count = 0;
    int depth = 0;
    int at = 0;
    while (at < reportDescriptor.size()) {
        const int prefix = static_cast<quint8>(reportDescriptor.at(at));
        if (prefix == longItem) {
            if (at + 1 >= reportDescriptor.size())
                break;
            at += 3 + static_cast<quint8>(reportDescriptor.at(at + 1));
            continue;
        }
        if ((prefix & 0xFC) == collection)
            count += depth++ == 0 ? 1 : 0;
        else if ((prefix & 0xFC) == endCollection)
            depth = std::max(0, depth - 1);
        at += 1 + ((prefix & 3) == 3 ? 4 : (prefix & 3));
    }
    return count;
}

void HidMarkers::fillFromPositions(QVector<HidInterface> &interfaces, const CollectionCount &countOf)
{
    int collection = 0;
    int last = 0;
    const HidInterface *previous = nullptr;
    for (HidInterface &current : interfaces) {
        const bool sameInterface =
            previous != nullptr && !current.path.isNull() && previous->path == current.path;
        if (!sameInterface)
            last = current.path.isNull() ? 0 : countOf(current.path);
        collection = sameInterface ? collection + 1 : 1;
        current.markers = text(current.interfaceNumber, last > 0 ? std::min(collection, last) : collection);
        previous = &current;
    }
}
