#include "checks/ToolFolders.h"

#include <QStandardPaths>

namespace {

/// Returns the user's folder for this program, which the launcher of the window program uses as well.
QString ownFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QLatin1String("/quillmarsh");
}

/// Returns `folder`, a folder beside the program, unless the program is installed: nothing in the folder of
/// the system's own programs belongs to it.
QStringList besideProgram(const QString &applicationFolder, const QString &folder)
{
    return applicationFolder == QLatin1String("/usr/bin") ? QStringList() : QStringList{folder};
}

} // namespace

QStringList toolFolders(const QString &applicationFolder)
{
    return besideProgram(applicationFolder, applicationFolder) +
           QStringList{ownFolder(), QStringLiteral("/usr/local/lib/quillmarsh"),
                       QStringLiteral("/usr/lib/quillmarsh/tools")};
}

QStringList controlListFolders(const QString &applicationFolder)
{
    return besideProgram(applicationFolder, applicationFolder + QLatin1String("/qmake")) +
           QStringList{ownFolder(), QStringLiteral("/etc/quillmarsh")};
}
