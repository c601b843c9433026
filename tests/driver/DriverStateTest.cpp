#include "driver/DriverState.h"

#include "driver/DriverPackage.h"
#include "tests/driver/FakeDriverSystem.h"

#include <gtest/gtest.h>

namespace {

TEST(DriverStateTest, ReportsWhetherTheDriverIsRunning)
{
    FakeDriverSystem system;
    system.drivers = QStringList{QStringLiteral("hal.dll")};
    EXPECT_EQ(DriverState::of(system).running, std::optional<bool>(false));
    system.drivers.append(QStringLiteral("LIBUSBK.SYS"));
    EXPECT_EQ(DriverState::of(system).running, std::optional<bool>(true));
}

TEST(DriverStateTest, IsUnknownIfTheSystemDoesNotListItsDrivers)
{
    FakeDriverSystem system;
    system.drivers = QStringList{QStringLiteral("libusbK.sys")};
    system.listSucceeds = false;
    EXPECT_EQ(DriverState::of(system).running, std::nullopt);
}

TEST(DriverStateTest, NamesEachMissingFileOfThePackageOnceAndChangesNothing)
{
    FakeDriverSystem system;
    const QStringList all{QStringLiteral("C:/App/Artinchip_SoC.inf"),
                          QStringLiteral("C:/App/dpscat.exe"),
                          QStringLiteral("C:/App/amd64/libusb0.dll"),
                          QStringLiteral("C:/App/amd64/libusbK.dll"),
                          QStringLiteral("C:/App/amd64/WdfCoInstaller01009.dll"),
                          QStringLiteral("C:/App/amd64/libusbK.sys")};
    EXPECT_EQ(DriverState::of(system).missingFiles, all);
    for (const QString &file : all)
        system.files.insert(file);
    EXPECT_EQ(DriverState::of(system).missingFiles, QStringList());
    EXPECT_EQ(system.events, QStringList());
}

} // namespace
