#pragma once

#include "driver/DriverSystem.h"

#include <QStringList>
#include <QVector>

/// Returns how many of the listed drivers to look at. Returns 0 when the call failed or the list may be
/// incomplete because it fills the buffer.
int loadedDriverCount(const DriverSystem::LoadedDrivers &listed);

/// A loaded kernel driver whose name can be read.
struct LoadedDriver
{
    /// In the system's list of all drivers, from 1.
    int place = 0;
    QString name;
};

/// Returns the loaded kernel drivers of `listed`, without writing anything.
QVector<LoadedDriver> namedDrivers(DriverSystem &system, const DriverSystem::LoadedDrivers &listed);

/// Returns the base names of all loaded kernel drivers. Writes each, with its place in the system's list, to
/// standard output and to the debug stream.
QStringList listLoadedDrivers(DriverSystem &system);
