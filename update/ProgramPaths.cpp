#include "update/ProgramPaths.h"

#include "update/FirmwareKeys.h"
#include "update/FirmwareServerAddress.h"

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
    return {application,
            temporaryFolder() + QLatin1String("/QuillmarshV3TmpPath"),
            application + QLatin1String("/upgcmd.exe"),
            application + QLatin1String("/upgcmdHid.exe"),
            firmwareManifestUrl(),
            application + QLatin1String("/qmake/dev.jn"),
            firmwareKeys()};
}

QString ProgramPaths::updateLock()
{
    // Not in the temporary folder, which differs between programs if the launcher has changed it.
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
           QLatin1String("/QuillmarshV3TmpPath.lock");
}

QString ProgramPaths::lastDirFile()
{
    return QDir(temporaryFolder()).filePath(QStringLiteral("last_dir.txt"));
}

QString ProgramPaths::iapProgrammer()
{
    return QCoreApplication::applicationDirPath() + QLatin1String("/IAP_Programmer.exe");
}
