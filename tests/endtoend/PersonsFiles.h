#pragma once

#include "tests/endtoend/EndToEnd.h"

#include "harness/window/FileRow.h"
#include "simulator/files/WholeFile.h"

#include <QDir>

/// Functions for tests with files of the user.
namespace EndToEnd {

const QString fileEdit = QStringLiteral("firmwareFileEdit");
const QString chooseButton = QStringLiteral("chooseFileButton");

inline QString lastDirFile(const UpdateScenario &s)
{
    return s.program.temporaryFolder() + QStringLiteral("/last_dir.txt");
}

/// Creates a folder in the working folder and returns its path.
inline QString makeFolder(const UpdateScenario &s, const char *name)
{
    const QString path = s.program.workingFolder() + QLatin1Char('/') + QString::fromUtf8(name);
    return QDir().mkpath(path) ? path : QString();
}

} // namespace EndToEnd
