#include "checks/ToolFolders.h"

#include <QCoreApplication>
#include <QStandardPaths>

namespace {

/// The user's own folder, which the launcher of the window program uses as well.
QString ownFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QLatin1String("/quillmarsh");
}

} // namespace

QStringList toolFolders()
{
    return {QCoreApplication::applicationDirPath(), ownFolder(), QStringLiteral("/usr/local/lib/quillmarsh"),
            QStringLiteral("/usr/lib/quillmarsh/tools")};
}

QStringList controlListFolders()
{
    return {QCoreApplication::applicationDirPath() + QLatin1String("/qmake"), ownFolder(),
            QStringLiteral("/etc/quillmarsh")};
}
