#include "checks/ToolFiles.h"

#include "simulator/files/WholeFile.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class ToolFilesTest : public testing::Test
{
protected:
    QString folder(const char *name) { return m_folder.filePath(QLatin1String(name)); }
    void put(const QString &folder, const char *name)
    {
        ASSERT_TRUE(QDir().mkpath(folder));
        ASSERT_TRUE(WholeFile::write(folder + QLatin1Char('/') + QLatin1String(name), "x"));
    }

    QTemporaryDir m_folder;
};

TEST_F(ToolFilesTest, EachFileIsTakenFromTheFirstFolderThatHasIt)
{
    const QStringList folders{folder("a"), folder("b"), folder("c")};
    put(folder("b"), "upgcmd.exe");
    put(folder("c"), "upgcmd.exe");
    put(folder("c"), "upgcmdHid.exe");
    put(folder("b"), "ControlDevList.json");
    const ToolFiles files = ToolFiles::findIn(folders, folders);
    EXPECT_EQ(files.usbFlasher, folder("b/upgcmd.exe"));
    EXPECT_EQ(files.hidFlasher, folder("c/upgcmdHid.exe"));
    EXPECT_EQ(files.controlList, folder("b/ControlDevList.json"));
}

TEST_F(ToolFilesTest, AMissingFileIsNamedInTheFirstFolder)
{
    const ToolFiles files = ToolFiles::findIn({folder("a"), folder("b")}, {folder("lists"), folder("b")});
    EXPECT_EQ(files.iapProgrammer, folder("a/IAP_Programmer.exe"));
    EXPECT_EQ(files.controlList, folder("lists/ControlDevList.json"));
}

} // namespace
