#pragma once

#include <QStringList>

/// Returns the folders in which the maker's tools are looked for, in their order, by a program in
/// `applicationFolder`.
QStringList toolFolders(const QString &applicationFolder);
/// The same for the control list.
QStringList controlListFolders(const QString &applicationFolder);
