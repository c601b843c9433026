#include "driver/DriverPackage.h"

#include <algorithm>

namespace DriverPackage {

QString serviceName()
{
    return QStringLiteral("libusbK");
}

bool isLibusbK(const QStringList &loadedDrivers)
{
    return std::any_of(loadedDrivers.begin(), loadedDrivers.end(),
                       [](const QString &name) { return name.contains(serviceName(), Qt::CaseInsensitive); });
}

QString infPath(const QString &applicationFolder)
{
    return applicationFolder + QLatin1String("/Artinchip_SoC.inf");
}

QString catalogPath(const QString &applicationFolder)
{
    return applicationFolder + QLatin1String("/Artinchip_SoC.cat");
}

QString catalogToolPath(const QString &applicationFolder)
{
    return applicationFolder + QLatin1String("/dpscat.exe");
}

QStringList catalogToolArguments(const QString &applicationFolder)
{
    return {QStringLiteral("/PATH"), applicationFolder};
}

QString infTool()
{
    return QStringLiteral("pnputil");
}

QStringList infToolArguments(const QString &inf)
{
    return {QStringLiteral("-i"), QStringLiteral("-a"), inf};
}

SystemFolders systemFolders(const QString &windows)
{
    QString system32 = windows + QLatin1String("/System32");
    system32.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return {system32, system32 + QLatin1String("/drivers")};
}

QVector<Copy> copies(const QString &applicationFolder, const SystemFolders &folders)
{
    const auto copyTo = [&applicationFolder](const QString &folder, const char *name) {
        const QString file = QLatin1Char('/') + QLatin1String(name);
        return Copy{applicationFolder + QLatin1String("/amd64") + file, folder + file};
    };
    return {copyTo(folders.system32, "libusb0.dll"), copyTo(folders.system32, "libusbK.dll"),
            // Intentional: a user-mode library among the drivers.
            copyTo(folders.drivers, "libusbK.dll"), copyTo(folders.system32, "WdfCoInstaller01009.dll"),
            copyTo(folders.drivers, "libusbK.sys")};
}

QString serviceBinary(const SystemFolders &folders)
{
    QString path = folders.drivers + QLatin1String("/libusbK.sys");
    return path.replace(QLatin1Char('/'), QLatin1Char('\\'));
}

} // namespace DriverPackage
