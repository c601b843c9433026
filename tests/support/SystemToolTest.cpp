#include "support/process/SystemTool.h"

#include <QDir>

#include <gtest/gtest.h>

namespace {

/// Returns an absolute path on the system on which the test runs.
QString absolute(const char *path)
{
    return QDir::rootPath() + QLatin1String(path);
}

TEST(SystemToolTest, TheSystemFolderComesFirstAndThenTheSearchPathInItsOrder)
{
    EXPECT_EQ(SystemTool::foldersToSearch(absolute("system"), {absolute("b"), absolute("a/")}, {}),
              (QStringList{absolute("system"), absolute("b"), absolute("a")}));
}

TEST(SystemToolTest, RelativeAndExcludedFoldersOfTheSearchPathAreSkipped)
{
    const QStringList searchPath{QString(),           QStringLiteral("."),   QStringLiteral("tools"),
                                 absolute("program"), absolute("PROGRAM/."), absolute("elsewhere/../working"),
                                 absolute("good")};
    EXPECT_EQ(SystemTool::foldersToSearch(absolute("system"), searchPath,
                                          {absolute("program"), absolute("working")}),
              (QStringList{absolute("system"), absolute("good")}));
}

TEST(SystemToolTest, WithoutASystemFolderOnlyTheSearchPathIsUsed)
{
    EXPECT_EQ(SystemTool::foldersToSearch(QString(), {absolute("good")}, {}), QStringList{absolute("good")});
}

} // namespace
