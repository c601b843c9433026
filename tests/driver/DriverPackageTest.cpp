#include "driver/DriverPackage.h"

#include <gtest/gtest.h>

namespace {

using namespace DriverPackage;

TEST(DriverPackageTest, LibusbKIsFoundAnywhereInANameAndInAnyLetterCase)
{
    const struct
    {
        QStringList names;
        bool expected;
    } cases[] = {
        {{}, false},
        {{QString()}, false},
        {{QStringLiteral("ntoskrnl.exe"), QStringLiteral("libusb0.sys")}, false},
        {{QStringLiteral("libusb"), QStringLiteral("K.sys")}, false},
        {{QStringLiteral("libusbK.sys")}, true},
        {{QStringLiteral("LIBUSBK.SYS")}, true},
        {{QStringLiteral("libusbk.sys")}, true},
        {{QStringLiteral("ntoskrnl.exe"), QStringLiteral("my_libusbK_2.sys"), QStringLiteral("hal.dll")},
         true},
    };
    for (const auto &c : cases)
        EXPECT_EQ(isLibusbK(c.names), c.expected) << c.names.join(QLatin1Char(' ')).toStdString();
}

TEST(DriverPackageTest, TheFilesAreBesideTheProgram)
{
    const QString folder = QStringLiteral("C:/Program Files/App");
    EXPECT_EQ(infPath(folder), QStringLiteral("C:/Program Files/App/Artinchip_SoC.inf"));
    EXPECT_EQ(catalogPath(folder), QStringLiteral("C:/Program Files/App/Artinchip_SoC.cat"));
    EXPECT_EQ(catalogToolPath(folder), QStringLiteral("C:/Program Files/App/dpscat.exe"));
}

TEST(DriverPackageTest, TheToolsGetTheFolderAndTheInfAsOneArgumentUnquoted)
{
    EXPECT_EQ(catalogToolArguments(QStringLiteral("C:/Program Files/App")),
              (QStringList{QStringLiteral("/PATH"), QStringLiteral("C:/Program Files/App")}));
    EXPECT_EQ(infTool(), QStringLiteral("pnputil"));
    EXPECT_EQ(infToolArguments(QStringLiteral("C:/A B/x.inf")),
              (QStringList{QStringLiteral("-i"), QStringLiteral("-a"), QStringLiteral("C:/A B/x.inf")}));
}

TEST(DriverPackageTest, TheSystemFoldersHaveForwardSlashesAndMayHaveNoPrefix)
{
    const struct
    {
        const char *windows;
        const char *system32;
        const char *drivers;
    } cases[] = {
        {"C:\\Windows", "C:/Windows/System32", "C:/Windows/System32/drivers"},
        {"D:/WINNT", "D:/WINNT/System32", "D:/WINNT/System32/drivers"},
        {"", "/System32", "/System32/drivers"},
    };
    for (const auto &c : cases) {
        const SystemFolders folders = systemFolders(QLatin1String(c.windows));
        EXPECT_EQ(folders.system32, QLatin1String(c.system32));
        EXPECT_EQ(folders.drivers, QLatin1String(c.drivers));
    }
}

TEST(DriverPackageTest, TheFiveCopiesAreInOrderWithLibusbKDllAlsoAmongTheDrivers)
{
    const struct
    {
        const char *source;
        const char *destination;
    } expected[] = {
        {"C:/App/amd64/libusb0.dll", "C:/Windows/System32/libusb0.dll"},
        {"C:/App/amd64/libusbK.dll", "C:/Windows/System32/libusbK.dll"},
        {"C:/App/amd64/libusbK.dll", "C:/Windows/System32/drivers/libusbK.dll"},
        {"C:/App/amd64/WdfCoInstaller01009.dll", "C:/Windows/System32/WdfCoInstaller01009.dll"},
        {"C:/App/amd64/libusbK.sys", "C:/Windows/System32/drivers/libusbK.sys"},
    };
    const QVector<Copy> made = copies(QStringLiteral("C:/App"), systemFolders(QStringLiteral("C:\\Windows")));
    ASSERT_EQ(made.size(), 5);
    for (int i = 0; i < made.size(); ++i) {
        EXPECT_EQ(made.at(i).source, QLatin1String(expected[i].source)) << i;
        EXPECT_EQ(made.at(i).destination, QLatin1String(expected[i].destination)) << i;
    }
}

TEST(DriverPackageTest, TheServiceIsRegisteredWithAWindowsPath)
{
    EXPECT_EQ(serviceName(), QStringLiteral("libusbK"));
    EXPECT_EQ(serviceBinary(systemFolders(QStringLiteral("C:\\Windows"))),
              QStringLiteral("C:\\Windows\\System32\\drivers\\libusbK.sys"));
    EXPECT_EQ(serviceBinary(systemFolders(QString())), QStringLiteral("\\System32\\drivers\\libusbK.sys"));
}

} // namespace
