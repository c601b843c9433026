#pragma once

#include "devices/HidPort.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <functional>

/// Windows writes into the path of a HID interface which interface of the device it is ("MI_00")
/// and which of its top-level collections ("Col04"), and the models that need one of them are
/// found by these words. Where paths hold nothing of that kind the same words are made here.
namespace HidMarkers {

/// "MI_00&Col04" for the fourth collection of the first interface. An interface number below 0
/// (unknown) leaves the first word out. Both numbers have two hexadecimal digits.
QString text(int interfaceNumber, int collection);

/// How many top-level collections a HID report descriptor has; 0 for one that makes no sense.
int topLevelCollections(const QByteArray &reportDescriptor);

/// Tells of a path how many top-level collections its interface has; 0 when that is not known.
using CollectionCount = std::function<int(const QByteArray &path)>;

/// Sets the markers of every interface from its number and from its place among the neighbours
/// with the same path. Such an enumeration has one entry for each top-level collection, but also
/// one for each nested collection with a usage, so the count is what the ordinal ends at.
void fillFromPositions(QVector<HidInterface> &interfaces, const CollectionCount &countOf);

/// What this platform needs: fillFromPositions() where paths lack the words, else nothing.
void fill(QVector<HidInterface> &interfaces);

} // namespace HidMarkers
