#include "report/LogTail.h"

#include "simulator/files/WholeFile.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QByteArray numbered(int count)
{
    QByteArray lines;
    for (int i = 1; i <= count; ++i)
        lines += "line " + QByteArray::number(i) + '\n';
    return lines;
}

TEST(LogTailTest, AShortLogIsWhole)
{
    EXPECT_EQ(LogTail::linesOf("a\nb\n", false), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(LogTail::linesOf("a\r\nb", false), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(LogTail::linesOf("a\n\n", false), (QStringList{QStringLiteral("a"), QString()}));
    EXPECT_EQ(LogTail::linesOf("", false), QStringList());
    EXPECT_EQ(LogTail::linesOf("\n", false), QStringList());
}

TEST(LogTailTest, OnlyTheLastTwoThousandLinesAreKept)
{
    const QStringList lines = LogTail::linesOf(numbered(2001), false);
    ASSERT_EQ(lines.size(), 2000);
    EXPECT_EQ(lines.first(), QStringLiteral("line 2"));
    EXPECT_EQ(lines.last(), QStringLiteral("line 2001"));
    EXPECT_EQ(LogTail::linesOf(numbered(2000), false).first(), QStringLiteral("line 1"));
}

TEST(LogTailTest, ALineThatWasCutIsOmitted)
{
    EXPECT_EQ(LogTail::linesOf("the rest\nwhole\n", true), QStringList(QStringLiteral("whole")));
    EXPECT_EQ(LogTail::linesOf("endless", true), QStringList(QStringLiteral("endless")));
}

TEST(LogTailTest, InvalidUtf8IsReplacedAndStaysOneLine)
{
    const QStringList lines = LogTail::linesOf(QByteArray("\xff\xfe x\0y\n\xe5\x9b", 9), false);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines.at(0).contains(QChar::ReplacementCharacter));
    EXPECT_TRUE(lines.at(0).contains(QStringLiteral(" x")));
}

TEST(LogTailTest, AtMostOneMebibyteOfAFileIsRead)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("log.txt"));
    const QByteArray line(999, 'x');
    QByteArray contents = "the first line\n";
    for (int i = 0; i < 1500; ++i)
        contents += line + '\n';
    ASSERT_TRUE(WholeFile::write(path, contents));
    const LogTail::Tail tail = LogTail::read(path);
    EXPECT_EQ(tail.size, contents.size());
    EXPECT_EQ(tail.lines.size(), LogTail::maximumBytes / 1000);
    EXPECT_EQ(tail.lines.first(), QString::fromLatin1(line));
}

TEST(LogTailTest, AMissingFileAndAFolderAreNotALog)
{
    const QTemporaryDir folder;
    EXPECT_EQ(LogTail::read(folder.filePath(QStringLiteral("none"))).size, -1);
    EXPECT_EQ(LogTail::read(folder.path()).size, -1);
}

} // namespace
