#include "update/LocalFiles.h"

#include "simulator/files/WholeFile.h"
#include "tests/common/RecordedDebugStream.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class LocalFilesTest : public testing::Test
{
protected:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    void touch(const QString &name) const { ASSERT_TRUE(WholeFile::write(path(name))); }
    QStringList left() const
    {
        return QDir(m_folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    QTemporaryDir m_folder;
};

TEST_F(LocalFilesTest, OfTwoImagesNamedBAndCapitalATheLatterComesFirst)
{
    touch(QStringLiteral("b.img"));
    touch(QStringLiteral("A.img"));
    EXPECT_EQ(LocalFiles::listImages(m_folder.path()),
              (QStringList{QStringLiteral("A.img"), QStringLiteral("b.img")}));
}

TEST_F(LocalFilesTest, TheOrderOfImagesIgnoresCase)
{
    touch(QStringLiteral("B.img"));
    touch(QStringLiteral("a.img"));
    EXPECT_EQ(LocalFiles::listImages(m_folder.path()),
              (QStringList{QStringLiteral("a.img"), QStringLiteral("B.img")}));
}

TEST_F(LocalFilesTest, OnlyRegularImgFilesAreListedAndEachPathIsPrinted)
{
    touch(QStringLiteral("a.bin"));
    touch(QStringLiteral("a.img.txt"));
    touch(QStringLiteral("c.img"));
    QDir(m_folder.path()).mkdir(QStringLiteral("folder.img"));
    const RecordedDebugStream debug;
    EXPECT_EQ(LocalFiles::listImages(m_folder.path()), QStringList{QStringLiteral("c.img")});
    EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("文件路径： ") + path(QStringLiteral("c.img"))});
}

TEST_F(LocalFilesTest, AFolderThatDoesNotExistHasNoImages)
{
    const RecordedDebugStream debug;
    EXPECT_TRUE(LocalFiles::listImages(path(QStringLiteral("none"))).isEmpty());
    EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("指定的路径无效!")});
}

TEST_F(LocalFilesTest, ClearingRemovesHiddenFilesToo)
{
    touch(QStringLiteral(".hidden"));
    touch(QStringLiteral("dev.img"));
    const RecordedDebugStream debug;
    LocalFiles::clearDir(m_folder.path());
    EXPECT_TRUE(left().isEmpty());
    QStringList lines = debug.lines();
    lines.sort();
    EXPECT_EQ(lines, (QStringList{QStringLiteral("Removed file: ") + path(QStringLiteral(".hidden")),
                                  QStringLiteral("Removed file: ") + path(QStringLiteral("dev.img"))}));
}

TEST_F(LocalFilesTest, ClearingKeepsFoldersAndTheirContents)
{
    QDir(m_folder.path()).mkdir(QStringLiteral("sub"));
    touch(QStringLiteral("sub/kept"));
    touch(QStringLiteral("gone"));
    LocalFiles::clearDir(m_folder.path());
    EXPECT_EQ(left(), QStringList{QStringLiteral("sub")});
    EXPECT_TRUE(QFile::exists(path(QStringLiteral("sub/kept"))));
}

TEST_F(LocalFilesTest, ClearingAFolderThatDoesNotExistIsOnlyReported)
{
    const RecordedDebugStream debug;
    LocalFiles::clearDir(path(QStringLiteral("none")));
    EXPECT_EQ(debug.lines(),
              QStringList{QStringLiteral("Directory does not exist: ") + path(QStringLiteral("none"))});
}

TEST_F(LocalFilesTest, EnsurePathOnAnExistingFolderWritesNothingAndReturnsTrue)
{
    const RecordedDebugStream debug;
    EXPECT_TRUE(LocalFiles::ensurePath(m_folder.path()));
    EXPECT_TRUE(debug.lines().isEmpty());
}

TEST_F(LocalFilesTest, EnsurePathCreatesAllMissingParents)
{
    const QString deep = path(QStringLiteral("a/b/c"));
    const RecordedDebugStream debug;
    EXPECT_TRUE(LocalFiles::ensurePath(deep));
    EXPECT_TRUE(QDir(deep).exists());
    EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("Created: ") + deep});
}

TEST_F(LocalFilesTest, EnsurePathBelowAFileFails)
{
    touch(QStringLiteral("file"));
    const QString below = path(QStringLiteral("file/tmp"));
    const RecordedDebugStream debug;
    EXPECT_FALSE(LocalFiles::ensurePath(below));
    EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("Create failed: ") + below});
}

} // namespace
