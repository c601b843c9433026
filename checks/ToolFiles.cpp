#include "checks/ToolFiles.h"

#include "checks/ToolFolders.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

QString firstIn(const QStringList &folders, const QString &name)
{
    for (const QString &folder : folders) {
        QString path = folder + QLatin1Char('/') + name;
        if (QFileInfo::exists(path))
            return path;
    }
    return folders.value(0) + QLatin1Char('/') + name;
}

} // namespace

ToolFiles ToolFiles::find()
{
    const QString application = QCoreApplication::applicationDirPath();
    return findIn(toolFolders(application), controlListFolders(application));
}

ToolFiles ToolFiles::findIn(const QStringList &folders, const QStringList &listFolders)
{
    return {firstIn(folders, QStringLiteral("upgcmd.exe")), firstIn(folders, QStringLiteral("upgcmdHid.exe")),
            firstIn(folders, QStringLiteral("IAP_Programmer.exe")),
            firstIn(listFolders, QStringLiteral("ControlDevList.json"))};
}
