#pragma once

#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>

/// Returns the path of a lock file that no other test uses. Windows knows the locks by the files' names
/// alone, so the name differs in every folder.
inline QString ownLockFile(const QTemporaryDir &folder)
{
    return folder.filePath(QFileInfo(folder.path()).fileName() + QStringLiteral(".lock"));
}
