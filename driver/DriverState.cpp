#include "driver/DriverState.h"

#include "driver/DriverPackage.h"
#include "driver/LoadedDrivers.h"

DriverState DriverState::of(DriverSystem &system)
{
    DriverState state;
    const DriverSystem::LoadedDrivers listed = system.loadedDrivers();
    if (loadedDriverCount(listed) > 0) {
        QStringList names;
        for (const LoadedDriver &driver : namedDrivers(system, listed))
            names.append(driver.name);
        state.running = DriverPackage::isLibusbK(names);
    }
    const QString folder = system.applicationFolder();
    QStringList files{DriverPackage::infPath(folder), DriverPackage::catalogToolPath(folder)};
    for (const DriverPackage::Copy &copy : DriverPackage::copies(folder, {}))
        files.append(copy.source);
    files.removeDuplicates();
    for (const QString &file : qAsConst(files)) {
        if (!system.exists(file))
            state.missingFiles.append(file);
    }
    return state;
}
