#include "support/lock/UpdateLock.h"

#include "simulator/files/WholeFile.h"
#include "tests/common/RecordingReporter.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

class UpdateLockFileTest : public testing::Test
{
protected:
    QString file() const { return m_folder.filePath(QStringLiteral("lock")); }

    QTemporaryDir m_folder;
    RecordingReporter m_reporter;
    UpdateLock m_lock{file()};
};

TEST_F(UpdateLockFileTest, OnlyTheUserMayOpenIt)
{
    const mode_t before = umask(0);
    const UpdateLock::Hold hold = m_lock.take(m_reporter);
    umask(before);
    struct stat status = {};
    ASSERT_EQ(stat(file().toUtf8().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
}

TEST_F(UpdateLockFileTest, NoLinkIsFollowed)
{
    const QString elsewhere = m_folder.filePath(QStringLiteral("elsewhere"));
    ASSERT_TRUE(QFile::link(elsewhere, file()));
    EXPECT_TRUE(m_lock.take(m_reporter));
    EXPECT_FALSE(QFile::exists(elsewhere));
}

TEST_F(UpdateLockFileTest, APipeInItsPlaceBlocksNobody)
{
    ASSERT_EQ(mkfifo(file().toUtf8().constData(), 0600), 0);
    EXPECT_FALSE(m_lock.isTakenElsewhere());
    EXPECT_TRUE(m_lock.take(m_reporter));
}

} // namespace
