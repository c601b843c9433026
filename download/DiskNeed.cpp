#include "download/DiskNeed.h"

#include <limits>

qint64 bytesToReserve(qint64 size, qint64 onDisk)
{
    constexpr qint64 largest = std::numeric_limits<qint64>::max();
    const qint64 both = size > largest / 2 ? largest : 2 * size;
    return both - onDisk;
}
