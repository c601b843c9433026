#pragma once

#include <QString>
#include <QStringList>

/// Operations on folders that an update needs.
namespace LocalFiles {

/// Returns the names of the "*.img" files in `dir`, sorted by name. Letter case is ignored.
QStringList listImages(const QString &dir);

/// Deletes the files and links directly in `dir`, including hidden ones. The targets of links and the folders
/// are kept.
void clearDir(const QString &dir);

/// Creates the folder with all its parents if needed. Returns whether it exists.
bool ensurePath(const QString &path);

} // namespace LocalFiles
