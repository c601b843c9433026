#include "driver/LoadedDrivers.h"

#include "support/log/Diagnostics.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/driver/FakeDriverSystem.h"

#include <gtest/gtest.h>

namespace {

TEST(LoadedDriversTest, TheCountFollowsFromTheReportedBytesUnlessTheBufferIsFull)
{
    const struct
    {
        bool succeeded;
        quint32 bytes;
        int expected;
    } cases[] = {
        {true, 0, 0},       {true, 7, 0},    {true, 8, 1},    {true, 15, 1},         {true, 8184, 1023},
        {true, 8191, 1023}, {true, 8192, 0}, {true, 8200, 0}, {true, 0xFFFFFFFF, 0}, {false, 80, 0},
    };
    for (const auto &c : cases) {
        DriverSystem::LoadedDrivers listed;
        listed.succeeded = c.succeeded;
        listed.bytes = c.bytes;
        EXPECT_EQ(loadedDriverCount(listed), c.expected) << c.succeeded << ' ' << c.bytes;
    }
}

TEST(LoadedDriversTest, NamesComeInTheSystemsOrderAndTheCounterCountsUnreadableOnesToo)
{
    FakeDriverSystem system;
    system.drivers = QStringList{QStringLiteral("ntoskrnl.exe"), QString(), QStringLiteral("hal.dll")};
    const RecordedDebugStream debug;
    Diagnostics::flush(20000); // what other tests in this process wrote
    testing::internal::CaptureStdout();
    const QStringList names = listLoadedDrivers(system);
    Diagnostics::flush(20000);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "【1】:ntoskrnl.exe\n【3】:hal.dll\n");
    EXPECT_EQ(names, (QStringList{QStringLiteral("ntoskrnl.exe"), QStringLiteral("hal.dll")}));
    EXPECT_EQ(debug.lines(), (QStringList{QStringLiteral("1:ntoskrnl.exe"), QStringLiteral("3:hal.dll")}));
}

TEST(LoadedDriversTest, AFailedCallGivesAnEmptyList)
{
    FakeDriverSystem system;
    system.drivers = QStringList{QStringLiteral("libusbK.sys")};
    system.listSucceeds = false;
    EXPECT_TRUE(listLoadedDrivers(system).isEmpty());
}

TEST(LoadedDriversTest, OneLessThan1024DriversAreAllListedAnd1024GiveAnEmptyList)
{
    FakeDriverSystem system;
    for (int i = 0; i < 1023; ++i)
        system.drivers.append(QStringLiteral("d%1.sys").arg(i));
    const RecordedDebugStream debug;
    EXPECT_EQ(listLoadedDrivers(system), system.drivers);
    system.drivers.append(QStringLiteral("libusbK.sys"));
    EXPECT_TRUE(listLoadedDrivers(system).isEmpty());
}

} // namespace
