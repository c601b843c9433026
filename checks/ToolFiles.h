#pragma once

#include "update/UpdatePaths.h"

#include <QString>
#include <QStringList>

/// The paths of the maker's tools and of the control list.
struct ToolFiles
{
    /// Each is the first file that exists or, if none does, the path in the first folder.
    QString usbFlasher;
    QString hidFlasher;
    QString iapProgrammer;
    QString controlList;

    /// Searches beside the program and, on Linux, in the folders of the package's launcher.
    static ToolFiles find();
    /// Searches `folders` in this order for the tools, and `listFolders` for the control list.
    static ToolFiles findIn(const QStringList &folders, const QStringList &listFolders);
};
