#include "devices/HidMarkers.h"

QString HidMarkers::text(int interfaceNumber, int collection)
{
    QString words;
    if (interfaceNumber >= 0)
        words = QStringLiteral("MI_%1&").arg(interfaceNumber, 2, 16, QLatin1Char('0'));
    words += QStringLiteral("Col%1").arg(collection, 2, 16, QLatin1Char('0'));
    return words;
}

void HidMarkers::fillFromPositions(QVector<HidInterface> &interfaces)
{
    int collection = 0;
    const HidInterface *previous = nullptr;
    for (HidInterface &current : interfaces) {
        const bool sameInterface =
            previous != nullptr && !current.path.isNull() && previous->path == current.path;
        collection = sameInterface ? collection + 1 : 1;
        current.markers = text(current.interfaceNumber, collection);
        previous = &current;
    }
}
