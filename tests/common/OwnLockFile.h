#pragma once

#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>

/// Returns the path of a lock file that no other test uses. Windows identifies locks by the file name alone,
/// so the name differs in each folder.
inline QString ownLockFile(const QTemporaryDir &folder)
{
    return folder.filePath(QFileInfo(folder.path()).fileName() + QStringLiteral(".lock"));
}
