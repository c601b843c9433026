#include "devices/hid/HidMarkers.h"

#include "devices/hid/HidDetails.h"

namespace {

int countInSystem(const QByteArray &path)
{
    return HidMarkers::topLevelCollections(HidDetails::reportDescriptor(path));
}

} // namespace

// A path such as "/dev/hidraw3" contains neither the interface nor the collection.
void HidMarkers::fill(QVector<HidInterface> &interfaces)
{
    fillFromPositions(interfaces, &countInSystem);
}
