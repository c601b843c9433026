#pragma once

#include <QStringList>

/// Returns the folders that a program in `applicationFolder` searches for the maker's tools, in this order.
QStringList toolFolders(const QString &applicationFolder);
/// Returns the folders that it searches for the control list.
QStringList controlListFolders(const QString &applicationFolder);
