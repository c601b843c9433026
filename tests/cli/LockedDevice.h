#pragma once

#include "harness/CliScenario.h"
#include "tests/cli/CliTest.h"

#include <QDir>

/// Starts the bus of the scenario and locks the device files of the device on it; from then on the program
/// runs without an administrator's right to open everything. Returns the names of the files; none is an
/// error.
inline QStringList lockDevice(CliScenario &s)
{
    s.program.startThrough({QStringLiteral("setpriv"), QStringLiteral("--inh-caps=-all"),
                            QStringLiteral("--ambient-caps=-all"), QStringLiteral("--bounding-set=-all")});
    // The bus starts with the first run of the program.
    if (s.run({QStringLiteral("list"), QStringLiteral("--json")}) != 0)
        return {};
    const QString nodes =
        s.bus.environment().value(QLatin1String("UMOCKDEV_DIR")).toString() + QStringLiteral("/dev/");
    QStringList locked;
    for (const QString &name :
         QDir(nodes).entryList({QStringLiteral("hidraw*")}, QDir::AllEntries | QDir::System)) {
        if (QFile::setPermissions(nodes + name, QFile::Permissions()))
            locked.append(name);
    }
    return locked;
}
