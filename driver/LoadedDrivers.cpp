#include "driver/LoadedDrivers.h"

#include "support/Diagnostics.h"

#include <QDebug>

int loadedDriverCount(const DriverSystem::LoadedDrivers &listed)
{
    constexpr quint32 addressBytes = sizeof(quint64);
    if (!listed.succeeded || listed.bytes >= DriverSystem::addressRoom * addressBytes)
        return 0;
    return static_cast<int>(listed.bytes / addressBytes);
}

QStringList listLoadedDrivers(DriverSystem &system)
{
    const DriverSystem::LoadedDrivers listed = system.loadedDrivers();
    const int count = loadedDriverCount(listed);
    QStringList names;
    for (int i = 0; i < count; ++i) {
        const std::optional<QString> name = system.driverBaseName(listed.addresses.value(i));
        if (!name)
            continue;
        // Counted over all drivers, those without a readable name included.
        const int place = i + 1;
        Diagnostics::writeStandardOutput(QStringLiteral("【%1】:").arg(place).toUtf8() + name->toUtf8() +
                                         '\n');
        qDebug().noquote().nospace() << place << ':' << *name;
        names.append(*name);
    }
    return names;
}
