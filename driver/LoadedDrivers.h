#pragma once

#include "driver/DriverSystem.h"

#include <QStringList>

/// How many of the listed drivers are to be looked at: none when the call failed, and none when the
/// list is as long as the room for it or longer, since some may then be missing.
int loadedDriverCount(const DriverSystem::LoadedDrivers &listed);

/// The base names of all kernel drivers that are loaded now. Each also goes to standard output and
/// to the debug stream, with its place in the system's list.
QStringList listLoadedDrivers(DriverSystem &system);
