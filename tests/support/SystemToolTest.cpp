#include "support/SystemTool.h"

#include <QDir>

#include <gtest/gtest.h>

namespace {

/// An absolute path of the system that the test runs on.
QString absolute(const char *path)
{
    return QDir::rootPath() + QLatin1String(path);
}

TEST(SystemToolTest, TheSystemFolderComesFirstAndThenTheSearchPathInItsOrder)
{
    EXPECT_EQ(SystemTool::foldersToSearch(absolute("system"), {absolute("b"), absolute("a/")}, {}),
              (QStringList{absolute("system"), absolute("b"), absolute("a")}));
}

TEST(SystemToolTest, FoldersOfTheSearchPathThatAreRelativeOrLeftOutDoNotCount)
{
    const QStringList searchPath{QString(),           QStringLiteral("."),   QStringLiteral("tools"),
                                 absolute("program"), absolute("PROGRAM/."), absolute("elsewhere/../working"),
                                 absolute("good")};
    EXPECT_EQ(SystemTool::foldersToSearch(absolute("system"), searchPath,
                                          {absolute("program"), absolute("working")}),
              (QStringList{absolute("system"), absolute("good")}));
}

TEST(SystemToolTest, WithoutASystemFolderTheSearchPathIsLeft)
{
    EXPECT_EQ(SystemTool::foldersToSearch(QString(), {absolute("good")}, {}), QStringList{absolute("good")});
}

} // namespace
