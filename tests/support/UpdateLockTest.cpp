#include "support/UpdateLock.h"

#include "tests/support/RecordingReporter.h"

#include <QFile>
#include <QLockFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// Two locks on one file are to each other as those of two copies.
class UpdateLockTest : public testing::Test
{
protected:
    QString file() const { return m_folder.filePath(QStringLiteral("lock")); }

    QTemporaryDir m_folder;
    RecordingReporter m_reporter;
    UpdateLock m_ours{file()};
    UpdateLock m_theirs{file()};
};

TEST_F(UpdateLockTest, TheSecondIsRefusedWithALineUntilTheFirstLetsGo)
{
    UpdateLock::Hold hold = m_ours.take(m_reporter);
    EXPECT_TRUE(hold);
    EXPECT_TRUE(m_reporter.logLines().isEmpty());
    EXPECT_FALSE(m_theirs.take(m_reporter));
    EXPECT_EQ(m_reporter.logLines(),
              QStringList{QStringLiteral("Another copy of this program is updating a device. "
                                         "Start again when it has finished.")});
    hold.reset();
    EXPECT_TRUE(m_theirs.take(m_reporter));
}

TEST_F(UpdateLockTest, OfTwoHoldsOfOneCopyTheLastThatEndsCounts)
{
    UpdateLock::Hold first = m_ours.take(m_reporter);
    const UpdateLock::Hold second = m_ours.take(m_reporter);
    EXPECT_TRUE(second);
    first.reset();
    EXPECT_FALSE(m_theirs.take(m_reporter));
}

TEST_F(UpdateLockTest, OnlyTheOtherSeesThatItIsTakenElsewhere)
{
    EXPECT_FALSE(m_theirs.isTakenElsewhere());
    UpdateLock::Hold hold = m_ours.take(m_reporter);
    EXPECT_FALSE(m_ours.isTakenElsewhere());
    EXPECT_TRUE(m_theirs.isTakenElsewhere());
    hold.reset();
    EXPECT_FALSE(m_theirs.isTakenElsewhere());
    EXPECT_TRUE(m_reporter.logLines().isEmpty());
}

TEST_F(UpdateLockTest, LookingLeavesNothingTaken)
{
    EXPECT_FALSE(m_ours.isTakenElsewhere());
    EXPECT_FALSE(QFile::exists(file()));
}

TEST_F(UpdateLockTest, WhereNothingCanBeWrittenNobodyIsKeptOut)
{
    UpdateLock nowhere(m_folder.filePath(QStringLiteral("missing/lock")));
    EXPECT_FALSE(nowhere.isTakenElsewhere());
    EXPECT_TRUE(nowhere.take(m_reporter));
}

} // namespace
