#include "devices/HidMarkers.h"

#include <QFile>
#include <QFileInfo>

namespace {

int countInSystem(const QByteArray &path)
{
    const QString node = QFileInfo(QFile::decodeName(path)).fileName();
    QFile file(QLatin1String("/sys/class/hidraw/") + node + QLatin1String("/device/report_descriptor"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    // The kernel's limit.
    constexpr qint64 maximumBytes = 4096;
    return HidMarkers::topLevelCollections(file.read(maximumBytes));
}

} // namespace

// A path such as "/dev/hidraw3" contains neither the interface nor the collection.
void HidMarkers::fill(QVector<HidInterface> &interfaces)
{
    fillFromPositions(interfaces, &countInSystem);
}
