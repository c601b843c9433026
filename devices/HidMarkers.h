#pragma once

#include "devices/HidPort.h"

#include <QString>
#include <QVector>

/// Windows writes into the path of a HID interface which interface of the device it is ("MI_00")
/// and which of its top-level collections ("Col04"), and the models that need one of them are
/// found by these words. Where paths hold nothing of that kind the same words are made here.
namespace HidMarkers {

/// "MI_00&Col04" for the fourth collection of the first interface. An interface number below 0
/// (unknown) leaves the first word out. Both numbers have two hexadecimal digits.
QString text(int interfaceNumber, int collection);

/// Sets the markers of every interface from its number and from its place among the neighbours
/// with the same path: such an enumeration has one entry for each top-level collection.
void fillFromPositions(QVector<HidInterface> &interfaces);

/// What this platform needs: fillFromPositions() where paths lack the words, else nothing.
void fill(QVector<HidInterface> &interfaces);

} // namespace HidMarkers
