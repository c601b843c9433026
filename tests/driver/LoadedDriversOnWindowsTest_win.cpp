#include "driver/LoadedDrivers.h"
#include "driver/WindowsDriverSystem.h"
#include "tests/common/RecordedDebugStream.h"

#include <windows.h>
// This header needs windows.h, so it comes after it.
#include <psapi.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace {

/// Loaded drivers, of which Wine has none.
struct Drivers
{
    bool listSucceeds = true;
    std::vector<std::uint64_t> addresses;
    /// A name without an entry cannot be read.
    std::map<std::uint64_t, std::string> names;
    DWORD room = 0;
    DWORD nameRoom = 0;
};

Drivers drivers;

std::uint64_t addressOf(const void *pointer)
{
    return reinterpret_cast<std::uintptr_t>(pointer);
}

} // namespace

// The program is linked with these functions instead of those of the system.
extern "C" BOOL WINAPI EnumDeviceDrivers(LPVOID *found, DWORD room, LPDWORD needed)
{
    drivers.room = room;
    const std::size_t count = std::min(drivers.addresses.size(), room / sizeof *found);
    for (std::size_t i = 0; i < count; ++i)
        found[i] = reinterpret_cast<LPVOID>(static_cast<std::uintptr_t>(drivers.addresses[i]));
    *needed = static_cast<DWORD>(drivers.addresses.size() * sizeof *found);
    return drivers.listSucceeds;
}

extern "C" DWORD WINAPI GetDeviceDriverBaseNameA(LPVOID driver, LPSTR name, DWORD room)
{
    drivers.nameRoom = room;
    const auto known = drivers.names.find(addressOf(driver));
    if (known == drivers.names.end() || known->second.size() >= room)
        return 0;
    std::memcpy(name, known->second.c_str(), known->second.size() + 1);
    return static_cast<DWORD>(known->second.size());
}

namespace {

class LoadedDriversOnWindowsTest : public testing::Test
{
protected:
    LoadedDriversOnWindowsTest() { drivers = Drivers(); }

    WindowsDriverSystem m_system;
};

TEST_F(LoadedDriversOnWindowsTest, TheAddressesAreInTheSystemsOrderFollowedByZeros)
{
    drivers.addresses = {0xFFFFF80012340000ULL, 0x1000, 0xFFFFFFFFFFFFF000ULL};
    const DriverSystem::LoadedDrivers listed = m_system.loadedDrivers();
    EXPECT_TRUE(listed.succeeded);
    EXPECT_EQ(listed.bytes, 24U);
    QVector<quint64> expected(1024, 0);
    std::copy(drivers.addresses.begin(), drivers.addresses.end(), expected.begin());
    EXPECT_EQ(listed.addresses, expected);
    EXPECT_EQ(drivers.room, 8192U);
}

TEST_F(LoadedDriversOnWindowsTest, AListThatExceedsTheBufferReportsItsWholeSize)
{
    drivers.addresses.assign(1025, 0x2000);
    const DriverSystem::LoadedDrivers listed = m_system.loadedDrivers();
    EXPECT_EQ(listed.bytes, 8200U);
    EXPECT_EQ(listed.addresses, QVector<quint64>(1024, 0x2000));
}

TEST_F(LoadedDriversOnWindowsTest, AListThatCannotBeReadIsAFailureWhateverItContains)
{
    drivers.addresses = {0x1000};
    drivers.listSucceeds = false;
    EXPECT_FALSE(m_system.loadedDrivers().succeeded);
}

TEST_F(LoadedDriversOnWindowsTest, EachAddressHasTheNameThatTheSystemGivesIt)
{
    drivers.names = {{0x1000, "libusbK.sys"}, {0xFFFFF80012340000ULL, std::string(127, 'n')}};
    EXPECT_EQ(m_system.driverBaseName(0x1000), QStringLiteral("libusbK.sys"));
    EXPECT_EQ(m_system.driverBaseName(0xFFFFF80012340000ULL), QString(127, QLatin1Char('n')));
    EXPECT_EQ(drivers.nameRoom, 128U);
    EXPECT_FALSE(m_system.driverBaseName(0x3000).has_value());
}

TEST_F(LoadedDriversOnWindowsTest, TheWholeListIsTheNamesInTheSystemsOrder)
{
    const RecordedDebugStream debug;
    drivers.addresses = {0x5000, 0x1000, 0x4000};
    drivers.names = {{0x1000, "hal.dll"}, {0x4000, "libusbK.sys"}};
    EXPECT_EQ(listLoadedDrivers(m_system),
              (QStringList{QStringLiteral("hal.dll"), QStringLiteral("libusbK.sys")}));
    EXPECT_EQ(debug.lines(), (QStringList{QStringLiteral("2:hal.dll"), QStringLiteral("3:libusbK.sys")}));
}

} // namespace
