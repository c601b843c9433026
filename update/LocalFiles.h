#pragma once

#include <QString>
#include <QStringList>

/// The few operations on folders that an update needs.
namespace LocalFiles {

/// Names of the "*.img" files in `dir`, by name without regard to case.
QStringList listImages(const QString &dir);

/// Deletes the files that lie directly in `dir`, hidden ones included, and the links, whose targets
/// stay as they are; folders stay.
void clearDir(const QString &dir);

/// Makes sure that the folder exists, with all its parents; returns whether it does.
bool ensurePath(const QString &path);

} // namespace LocalFiles
