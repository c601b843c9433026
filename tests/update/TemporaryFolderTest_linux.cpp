#include "update/TemporaryFolder.h"

#include "simulator/files/WholeFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using TemporaryFolder::Entry;

class TemporaryFolderOnLinuxTest : public testing::Test
{
protected:
    ~TemporaryFolderOnLinuxTest() override { umask(m_umask); }

    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

    const mode_t m_umask = umask(0);
    const QTemporaryDir m_folder;
};

TEST_F(TemporaryFolderOnLinuxTest, AFolderIsCreatedForItsOwnerOnlyWhateverTheUmask)
{
    ASSERT_TRUE(TemporaryFolder::create(path("made")));
    const Entry made = TemporaryFolder::entryOf(path("made"));
    EXPECT_EQ(made.kind, Entry::Folder);
    EXPECT_EQ(made.owner, geteuid());
    EXPECT_EQ(made.mode, 0700U);
}

TEST_F(TemporaryFolderOnLinuxTest, AnExistingFolderKeepsItsMode)
{
    ASSERT_EQ(mkdir(QFile::encodeName(path("there")).constData(), 0775), 0);
    EXPECT_TRUE(TemporaryFolder::create(path("there")));
    EXPECT_EQ(TemporaryFolder::entryOf(path("there")).mode, 0775U);
    EXPECT_FALSE(TemporaryFolder::reasonNotToUse(path("there")).isEmpty());
}

TEST_F(TemporaryFolderOnLinuxTest, ALinkIsSeenAsALinkWhereverItLeads)
{
    ASSERT_TRUE(QFile::link(m_folder.path(), path("to a folder")));
    ASSERT_TRUE(QFile::link(path("nothing"), path("to nothing")));
    EXPECT_EQ(TemporaryFolder::entryOf(path("to a folder")).kind, Entry::Link);
    EXPECT_EQ(TemporaryFolder::entryOf(path("to nothing")).kind, Entry::Link);
}

TEST_F(TemporaryFolderOnLinuxTest, FilesAndMissingPathsAreDistinguished)
{
    ASSERT_TRUE(WholeFile::write(path("file")));
    EXPECT_EQ(TemporaryFolder::entryOf(path("file")).kind, Entry::Other);
    EXPECT_EQ(TemporaryFolder::entryOf(path("none")).kind, Entry::Missing);
    EXPECT_FALSE(TemporaryFolder::create(path("file")));
    EXPECT_FALSE(TemporaryFolder::create(path("file/below")));
}

TEST_F(TemporaryFolderOnLinuxTest, TheParentFolderIsChecked)
{
    ASSERT_TRUE(TemporaryFolder::create(path("around")));
    ASSERT_TRUE(TemporaryFolder::create(path("around/folder")));
    EXPECT_EQ(TemporaryFolder::reasonNotToUse(path("around/folder")), QString());
    ASSERT_EQ(chmod(QFile::encodeName(path("around")).constData(), 0777), 0);
    EXPECT_FALSE(TemporaryFolder::reasonNotToUse(path("around/folder")).isEmpty());
    ASSERT_EQ(chmod(QFile::encodeName(path("around")).constData(), 01777), 0);
    EXPECT_EQ(TemporaryFolder::reasonNotToUse(path("around/folder")), QString());
}

} // namespace
