#include "devices/HidMarkers.h"

#include "devices/HidDetails.h"

namespace {

int countInSystem(const QByteArray &path)
{
    return HidMarkers::topLevelCollections(HidDetails::reportDescriptor(path));
}

} // namespace

// "/dev/hidraw3" says nothing of interface and collection.
void HidMarkers::fill(QVector<HidInterface> &interfaces)
{
    fillFromPositions(interfaces, &countInSystem);
}
