#include "driver/LoadedDrivers.h"

#include "support/log/Diagnostics.h"

#include <QDebug>

int loadedDriverCount(const DriverSystem::LoadedDrivers &listed)
{
    constexpr quint32 addressBytes = sizeof(quint64);
    if (!listed.succeeded || listed.bytes >= DriverSystem::addressRoom * addressBytes)
        return 0;
    return static_cast<int>(listed.bytes / addressBytes);
}

QVector<LoadedDriver> namedDrivers(DriverSystem &system, const DriverSystem::LoadedDrivers &listed)
{
    const int count = loadedDriverCount(listed);
    QVector<LoadedDriver> drivers;
    for (int i = 0; i < count; ++i) {
        // The position counts all drivers, including those whose name cannot be read.
        if (const std::optional<QString> name = system.driverBaseName(listed.addresses.value(i)))
            drivers.append({i + 1, *name});
    }
    return drivers;
}

QStringList listLoadedDrivers(DriverSystem &system)
{
    QStringList names;
    for (const LoadedDriver &driver : namedDrivers(system, system.loadedDrivers())) {
        Diagnostics::writeStandardOutput(QStringLiteral("【%1】:").arg(driver.position).toUtf8() +
                                         driver.name.toUtf8() + '\n');
        qDebug().noquote().nospace() << driver.position << ':' << driver.name;
        names.append(driver.name);
    }
    return names;
}
