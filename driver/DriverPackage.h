#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// The libusbK driver package: which files belong beside the executable and where they go. Nothing
/// here touches a file. Paths have "/" between their parts unless said otherwise.
namespace DriverPackage {

/// The name of the service, and what the base name of the loaded driver contains.
QString serviceName();
/// Whether one of these base names of loaded drivers is libusbK's, in capitals or not.
bool isLibusbK(const QStringList &loadedDrivers);

QString infPath(const QString &applicationFolder);
QString catalogPath(const QString &applicationFolder);
QString catalogToolPath(const QString &applicationFolder);
QStringList catalogToolArguments(const QString &applicationFolder);
/// A tool of the system's, by its name alone.
QString infTool();
QStringList infToolArguments(const QString &inf);

/// Where Windows keeps libraries and drivers.
struct SystemFolders
{
    QString system32;
    QString drivers;
};
/// `windows` may have "\" between its parts, and may be empty.
SystemFolders systemFolders(const QString &windows);

struct Copy
{
    QString source;
    QString destination;
};
/// In the order in which they are made, for whatever processor.
QVector<Copy> copies(const QString &applicationFolder, const SystemFolders &folders);

/// The driver itself, with "\" between the parts: what its service is registered with.
QString serviceBinary(const SystemFolders &folders);

} // namespace DriverPackage
