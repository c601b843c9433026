#pragma once

#include <QStringList>

/// Returns the folders in which the maker's tools are looked for, in their order.
QStringList toolFolders();
/// Returns the folders in which the control list is looked for, in their order.
QStringList controlListFolders();
