#include "checks/ToolFolders.h"

#include <gtest/gtest.h>

namespace {

class ToolFoldersTest : public testing::Test
{
protected:
    ToolFoldersTest() { qputenv("XDG_DATA_HOME", "/home/somebody/data"); }
    ~ToolFoldersTest() override { qunsetenv("XDG_DATA_HOME"); }

    const QString own = QStringLiteral("/home/somebody/data/quillmarsh");
};

TEST_F(ToolFoldersTest, AFolderOfTheProgramItselfComesFirst)
{
    const QString folder = QStringLiteral("/opt/quillmarsh");
    EXPECT_EQ(toolFolders(folder), (QStringList{folder, own, QStringLiteral("/usr/local/lib/quillmarsh"),
                                                QStringLiteral("/usr/lib/quillmarsh/tools")}));
    EXPECT_EQ(controlListFolders(folder),
              (QStringList{folder + QLatin1String("/qmake"), own, QStringLiteral("/etc/quillmarsh")}));
}

TEST_F(ToolFoldersTest, TheFolderOfAnInstalledProgramIsNotSearched)
{
    EXPECT_EQ(toolFolders(QStringLiteral("/usr/bin")),
              (QStringList{own, QStringLiteral("/usr/local/lib/quillmarsh"),
                           QStringLiteral("/usr/lib/quillmarsh/tools")}));
    EXPECT_EQ(controlListFolders(QStringLiteral("/usr/bin")),
              (QStringList{own, QStringLiteral("/etc/quillmarsh")}));
}

} // namespace
