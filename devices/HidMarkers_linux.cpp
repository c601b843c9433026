#include "devices/HidMarkers.h"

// "/dev/hidraw3" says nothing of interface and collection.
void HidMarkers::fill(QVector<HidInterface> &interfaces)
{
    fillFromPositions(interfaces);
}
