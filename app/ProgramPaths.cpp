#include "app/ProgramPaths.h"

#include "app/FirmwareServer.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

namespace {

QString temporaryFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::TempLocation);
}

} // namespace

UpdatePaths ProgramPaths::update()
{
    const QString application = QCoreApplication::applicationDirPath();
    return {application, temporaryFolder() + QLatin1String("/QuillmarshV3TmpPath"),
            application + QLatin1String("/upgcmd.exe"), application + QLatin1String("/upgcmdHid.exe"),
            firmwareManifestUrl()};
}

QString ProgramPaths::updateLock()
{
    return update().temporaryFolder + QLatin1String(".lock");
}

QString ProgramPaths::lastDirFile()
{
    return QDir(temporaryFolder()).filePath(QStringLiteral("last_dir.txt"));
}

QString ProgramPaths::iapProgrammer()
{
    return QCoreApplication::applicationDirPath() + QLatin1String("/IAP_Programmer.exe");
}
