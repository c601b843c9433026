#include "support/log/LogFile.h"
#include "simulator/files/WholeFile.h"
#include "tests/common/TextOnDisk.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class LogFileTest : public testing::Test
{
protected:
    QString path() const { return m_folder.filePath(QStringLiteral("UPDLog.txt")); }
    QByteArray contents() const { return WholeFile::read(path(), "(no file)"); }

    QTemporaryDir m_folder;
};

TEST_F(LogFileTest, AppendLineWritesItsContentWithoutATimeStamp)
{
    EXPECT_TRUE(LogFile::appendLine(path(), QStringLiteral("plain")));
    EXPECT_EQ(contents(), textOnDisk("plain\n"));
}

TEST_F(LogFileTest, ATimestampedLineIsTheLocalTimeInBracketsABlankAndTheText)
{
    EXPECT_TRUE(LogFile::appendTimestampedLine(path(), QStringLiteral("hello")));
    EXPECT_TRUE(QRegularExpression(QStringLiteral(R"(^\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\] hello\r?\n$)"))
                    .match(QString::fromUtf8(contents()))
                    .hasMatch())
        << contents().constData();
}

TEST_F(LogFileTest, AnEmptyMessageYieldsOnlyTheBracketedTimeAndOneBlank)
{
    LogFile::appendTimestampedLine(path(), QString());
    EXPECT_EQ(contents().size(), 22 + textOnDisk("\n").size());
    EXPECT_TRUE(contents().endsWith(textOnDisk("] \n")));
}

TEST_F(LogFileTest, AMessageWithALineFeedLeavesAContinuationLineWithoutATimeStamp)
{
    LogFile::appendTimestampedLine(path(), QStringLiteral("first\nsecond"));
    EXPECT_TRUE(contents().endsWith(textOnDisk("] first\nsecond\n")));
}

TEST_F(LogFileTest, ExistingContentIsNeverTruncated)
{
    LogFile::appendLine(path(), QStringLiteral("run one"));
    LogFile::appendLine(path(), QStringLiteral("run two"));
    EXPECT_EQ(contents(), textOnDisk("run one\nrun two\n"));
}

TEST_F(LogFileTest, TextIsUtf8WithoutAByteOrderMark)
{
    LogFile::appendLine(path(), QStringLiteral("解析"));
    EXPECT_EQ(contents(), textOnDisk("解析\n"));
}

TEST_F(LogFileTest, PlaceholdersInAMessageAreNotReplaced)
{
    LogFile::appendTimestampedLine(path(), QStringLiteral("%1 and %2"));
    EXPECT_TRUE(contents().endsWith(textOnDisk("] %1 and %2\n")));
}

TEST_F(LogFileTest, IfTheFileCannotBeOpenedOnlyTheLineIsLost)
{
    EXPECT_FALSE(
        LogFile::appendLine(m_folder.path() + QStringLiteral("/none/UPDLog.txt"), QStringLiteral("lost")));
}

} // namespace
