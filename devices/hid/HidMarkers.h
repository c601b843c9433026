#pragma once

#include "devices/hid/HidPort.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <functional>

/// On Windows the path of a HID interface contains the number of the interface ("MI_00") and of the top-level
/// collection ("Col04"). Models that need a certain one of them are found by these markers. On systems whose
/// paths do not contain them, the functions here generate them.
namespace HidMarkers {

/// Returns for example "MI_00&Col04" for the fourth collection of the first interface. Both numbers have two
/// hexadecimal digits. The first marker is omitted if the interface number is negative (unknown).
QString text(int interfaceNumber, int collection);

/// Returns the number of top-level collections in a HID report descriptor; 0 if the descriptor is malformed.
int topLevelCollections(const QByteArray &reportDescriptor);

/// Returns the number of top-level collections of the interface with a path; 0 if it is not known.
using CollectionCount = std::function<int(const QByteArray &path)>;

/// Sets the markers of all interfaces from their numbers and from their ordinals among the neighbours with
/// the same path. The enumeration contains an entry for each top-level collection, and also one for each
/// nested collection with a usage; the ordinal therefore stops at the number of top-level collections.
void fillFromPositions(QVector<HidInterface> &interfaces, const CollectionCount &countOf);

/// Calls fillFromPositions() on platforms whose paths do not contain the markers; elsewhere does nothing.
void fill(QVector<HidInterface> &interfaces);

} // namespace HidMarkers
