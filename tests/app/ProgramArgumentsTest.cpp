#include "support/process/ToolRun.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QByteArray listed(const QStringList &arguments)
{
    const ToolRun run = runToolToEnd(QStringLiteral(ARGUMENT_LISTER), arguments, 30000);
    return run.end == ToolRun::Finished ? run.standardOutput : run.errorString.toUtf8();
}

TEST(ProgramArgumentsTest, ChineseCharactersAndBlanksArriveWhole)
{
    EXPECT_EQ(listed({QStringLiteral("TessilonixUpDate"), QStringLiteral("屏 幕 Ä 8")}),
              "TessilonixUpDate\n屏 幕 Ä 8\n");
}

TEST(ProgramArgumentsTest, AnEmptyArgumentAndOneInQuotesArePassedOn)
{
    EXPECT_EQ(listed({QString(), QStringLiteral("a \"b\" c\\"), QStringLiteral("d")}), "\na \"b\" c\\\nd\n");
}

TEST(ProgramArgumentsTest, WithoutArgumentsTheListIsEmpty)
{
    EXPECT_EQ(listed({}), "");
}

TEST(ProgramArgumentsTest, AProgramInAFolderWithChineseCharactersAndBlanksSeesItsArguments)
{
    const QTemporaryDir parent;
    const QString folder = parent.filePath(QStringLiteral("固件 升级 工具"));
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString program = folder + QStringLiteral("/列 出.exe");
    ASSERT_TRUE(QFile::copy(QFileInfo(QStringLiteral(ARGUMENT_LISTER)).filePath(), program));
    const ToolRun run = runToolToEnd(program, {QStringLiteral("ZN58UpDate"), QStringLiteral("映像")}, 30000);
    EXPECT_EQ(run.end, ToolRun::Finished) << run.errorString.toStdString();
    EXPECT_EQ(run.standardOutput, "ZN58UpDate\n映像\n");
}

} // namespace
