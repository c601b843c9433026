#pragma once

#include "update/UpdatePaths.h"

#include <QString>

/// Paths of the program's files. Needs the application object.
namespace ProgramPaths {

UpdatePaths update();
/// Returns the file in which the last folder of the file dialog is stored.
QString lastDirFile();
/// Returns the lock file that keeps a second copy of the program from updating; see UpdateLock.
QString updateLock();
QString iapProgrammer();

} // namespace ProgramPaths
