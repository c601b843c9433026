#include "checks/ToolFolders.h"

QStringList toolFolders(const QString &applicationFolder)
{
    return {applicationFolder};
}

QStringList controlListFolders(const QString &applicationFolder)
{
    return {applicationFolder + QLatin1String("/qmake")};
}
