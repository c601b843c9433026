#include "driver/WholeCopy.h"

#include "simulator/files/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class WholeCopyTest : public testing::Test
{
protected:
    WholeCopyTest() { QDir(m_folder.path()).mkdir(QStringLiteral("to")); }

    QString source() const { return m_folder.filePath(QStringLiteral("from")); }
    QString destination() const { return m_folder.filePath(QStringLiteral("to/file")); }
    QStringList arrived() const
    {
        return QDir(m_folder.filePath(QStringLiteral("to")))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    const QTemporaryDir m_folder;
};

TEST_F(WholeCopyTest, OnlyTheDestinationIsCreatedAndHasAllContents)
{
    for (const int size : {0, 1, 256 * 1024, 3 * 256 * 1024 + 7}) {
        QFile::remove(destination());
        const QByteArray contents(size, 'x');
        ASSERT_TRUE(WholeFile::write(source(), contents));
        EXPECT_TRUE(copyWhole(source(), destination())) << size;
        EXPECT_EQ(WholeFile::read(destination(), "(no file)"), contents) << size;
        EXPECT_EQ(arrived(), QStringList{QStringLiteral("file")}) << size;
    }
}

TEST_F(WholeCopyTest, AnExistingFileIsNotOverwritten)
{
    ASSERT_TRUE(WholeFile::write(source(), "new"));
    ASSERT_TRUE(WholeFile::write(destination(), "old"));
    EXPECT_FALSE(copyWhole(source(), destination()));
    EXPECT_EQ(WholeFile::read(destination()), "old");
    EXPECT_EQ(arrived(), QStringList{QStringLiteral("file")});
}

TEST_F(WholeCopyTest, TheRemainsOfAKilledCopyAreReplaced)
{
    ASSERT_TRUE(WholeFile::write(source(), "new"));
    ASSERT_TRUE(WholeFile::write(destination() + QStringLiteral(".quillmarsh-new"), "half of an older one"));
    EXPECT_TRUE(copyWhole(source(), destination()));
    EXPECT_EQ(WholeFile::read(destination()), "new");
    EXPECT_EQ(arrived(), QStringList{QStringLiteral("file")});
}

TEST_F(WholeCopyTest, ASourceThatIsMissingOrAFolderCreatesNothing)
{
    EXPECT_FALSE(copyWhole(source(), destination()));
    ASSERT_TRUE(QDir().mkdir(source()));
    EXPECT_FALSE(copyWhole(source(), destination()));
    EXPECT_TRUE(arrived().isEmpty());
}

TEST_F(WholeCopyTest, ADestinationWhoseFolderIsMissingFails)
{
    ASSERT_TRUE(WholeFile::write(source(), "new"));
    EXPECT_FALSE(copyWhole(source(), m_folder.filePath(QStringLiteral("none/file"))));
    EXPECT_FALSE(QFile::exists(m_folder.filePath(QStringLiteral("none"))));
}

} // namespace
