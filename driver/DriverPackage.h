#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// The libusbK driver package: the files that belong beside the executable, and where they are copied to.
/// These functions do not access files. Paths use "/" unless stated otherwise.
namespace DriverPackage {

/// Returns the name of the service. The base name of the loaded driver contains it.
QString serviceName();
/// Returns whether one of these base names of loaded drivers is that of libusbK. Letter case is ignored.
bool isLibusbK(const QStringList &loadedDrivers);

QString infPath(const QString &applicationFolder);
QString catalogPath(const QString &applicationFolder);
QString catalogToolPath(const QString &applicationFolder);
QStringList catalogToolArguments(const QString &applicationFolder);
/// Returns the name, without a folder, of the system's tool that installs setup information.
QString infTool();
QStringList infToolArguments(const QString &inf);

/// The folders in which Windows keeps libraries and drivers.
struct SystemFolders
{
    QString system32;
    QString drivers;
};
/// Returns the folders for the Windows folder `windows`, which may use "\" and may be empty.
SystemFolders systemFolders(const QString &windows);

struct Copy
{
    QString source;
    QString destination;
};
/// Returns the copies in the order in which they are made. They do not depend on the processor.
QVector<Copy> copies(const QString &applicationFolder, const SystemFolders &folders);

/// Returns the path of the driver, with "\", with which its service is registered.
QString serviceBinary(const SystemFolders &folders);

} // namespace DriverPackage
