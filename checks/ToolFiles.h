#pragma once

#include "update/UpdatePaths.h"

#include <QString>
#include <QStringList>

/// Where the maker's tools and the control list are.
struct ToolFiles
{
    /// Each the first that is there; where none is, the first place.
    QString usbFlasher;
    QString hidFlasher;
    QString iapProgrammer;
    QString controlList;

    /// Looks for them beside the program and, on Linux, where the package's launcher looks.
    static ToolFiles find();
    /// The same in `folders`, in this order; the control list is looked for in `listFolders`.
    static ToolFiles findIn(const QStringList &folders, const QStringList &listFolders);
};
