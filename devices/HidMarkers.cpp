#include "devices/HidMarkers.h"

QString HidMarkers::text(int interfaceNumber, int collection)
{
    const QString column = QStringLiteral("Col%1").arg(collection, 2, 16, QLatin1Char('0'));
    if (interfaceNumber < 0)
        return column;
    return QStringLiteral("MI_%1&").arg(interfaceNumber, 2, 16, QLatin1Char('0')) + column;
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
