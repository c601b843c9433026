#pragma once

#include "update/UpdatePaths.h"

#include <QString>

/// Where the program finds and leaves its files; needs the application object.
namespace ProgramPaths {

UpdatePaths update();
/// Holds the folder that the file dialog showed last.
QString lastDirFile();
QString iapProgrammer();

} // namespace ProgramPaths
