#include "checks/ToolFolders.h"

#include <QCoreApplication>

QStringList toolFolders()
{
    return {QCoreApplication::applicationDirPath()};
}

QStringList controlListFolders()
{
    return {QCoreApplication::applicationDirPath() + QLatin1String("/qmake")};
}
