#pragma once

#include "driver/DriverSystem.h"

#include <QStringList>
#include <QVector>

/// Returns the number of listed drivers. Returns 0 if the call failed, or if the list fills the buffer and
/// may therefore be incomplete.
int loadedDriverCount(const DriverSystem::LoadedDrivers &listed);

/// A loaded kernel driver whose name can be read.
struct LoadedDriver
{
    /// The position in the system's list of all drivers, from 1.
    int position = 0;
    QString name;
};

/// Returns the drivers of `listed` whose name can be read. Unlike listLoadedDrivers(), it does not write
/// anything.
QVector<LoadedDriver> namedDrivers(DriverSystem &system, const DriverSystem::LoadedDrivers &listed);

/// Returns the base names of all loaded kernel drivers. Writes each of them, with its position in the
/// system's list, to standard output and to the debug stream.
QStringList listLoadedDrivers(DriverSystem &system);
