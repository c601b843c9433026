#pragma once

#include "update/UpdatePaths.h"

#include <QString>

/// Where the program finds and leaves its files; needs the application object.
namespace ProgramPaths {

UpdatePaths update();
/// Holds the folder that the file dialog showed last.
QString lastDirFile();
/// By which one of several copies keeps the others from updating; see UpdateLock.
QString updateLock();
QString iapProgrammer();

} // namespace ProgramPaths
