#include "support/lock/UpdateLock.h"

#include "harness/process/Polling.h"
#include "simulator/files/WholeFile.h"
#include "tests/common/OwnLockFile.h"
#include "tests/common/RecordingReporter.h"
#include "tests/common/ScriptedTools.h"

#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace {

constexpr int rounds = 1000;

/// A barrier for two threads.
class MeetingPoint
{
public:
    void meet()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        const int meeting = m_meetings;
        if (++m_arrived == 2) {
            m_arrived = 0;
            ++m_meetings;
            m_met.notify_all();
        } else {
            m_met.wait(lock, [&] { return m_meetings != meeting; });
        }
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_met;
    int m_arrived = 0;
    int m_meetings = 0;
};

/// Uses two locks of the same file, which behave like those of two copies of the program.
class UpdateLockTest : public testing::Test
{
protected:
    QString file() const { return ownLockFile(m_folder); }
    void startAnotherCopy(QProcess &copy) const
    {
        copy.start(QStringLiteral(UPDATE_LOCK_HOLDER), {file()});
        QByteArray said;
        waitInShortSteps(
            [&](int ms) {
                copy.waitForReadyRead(ms);
                said += copy.readAllStandardOutput();
                return said.contains("taken") || copy.state() == QProcess::NotRunning;
            },
            eventLimitMs);
        ASSERT_TRUE(said.contains("taken")) << copy.errorString().toStdString();
    }

    QTemporaryDir m_folder;
    RecordingReporter m_reporter;
    UpdateLock m_ours{file()};
    UpdateLock m_theirs{file()};
};

TEST_F(UpdateLockTest, TheSecondIsRefusedWithALineUntilTheFirstReleasesTheLock)
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

TEST_F(UpdateLockTest, TheLastHoldOfACopyReleasesTheLock)
{
    UpdateLock::Hold first = m_ours.take(m_reporter);
    UpdateLock::Hold second = m_ours.take(m_reporter);
    EXPECT_TRUE(second);
    first.reset();
    EXPECT_FALSE(m_theirs.take(m_reporter));
    second.reset();
    EXPECT_TRUE(m_theirs.take(m_reporter));
}

TEST_F(UpdateLockTest, AHoldMayOutliveItsLockAndEndOnAnotherThread)
{
    auto lock = std::make_unique<UpdateLock>(file());
    UpdateLock::Hold hold = lock->take(m_reporter);
    lock.reset();
    EXPECT_FALSE(m_theirs.take(m_reporter));
    std::thread([last = std::move(hold)]() mutable { last.reset(); }).join();
    EXPECT_TRUE(m_theirs.take(m_reporter));
}

TEST_F(UpdateLockTest, OnlyAnotherCopySeesThatTheLockIsTakenElsewhere)
{
    EXPECT_FALSE(m_theirs.isTakenElsewhere());
    UpdateLock::Hold hold = m_ours.take(m_reporter);
    EXPECT_FALSE(m_ours.isTakenElsewhere());
    EXPECT_TRUE(m_theirs.isTakenElsewhere());
    hold.reset();
    EXPECT_FALSE(m_theirs.isTakenElsewhere());
    EXPECT_TRUE(m_reporter.logLines().isEmpty());
}

TEST_F(UpdateLockTest, AskingDoesNotTakeTheLock)
{
    EXPECT_FALSE(m_ours.isTakenElsewhere());
    EXPECT_FALSE(QFile::exists(file()));
}

TEST_F(UpdateLockTest, IfTheLockFileCannotBeCreatedNobodyIsKeptOut)
{
    UpdateLock nowhere(m_folder.filePath(QStringLiteral("missing/")) + QFileInfo(file()).fileName());
    EXPECT_FALSE(nowhere.isTakenElsewhere());
    EXPECT_TRUE(nowhere.take(m_reporter));
    EXPECT_TRUE(m_reporter.logLines().isEmpty());
}

TEST_F(UpdateLockTest, LocksOfDifferentFilesAreIndependent)
{
    const UpdateLock::Hold hold = m_ours.take(m_reporter);
    UpdateLock other(file() + QStringLiteral("2"));
    EXPECT_FALSE(other.isTakenElsewhere());
    EXPECT_TRUE(other.take(m_reporter));
}

TEST_F(UpdateLockTest, AKilledCopyKeepsNobodyOut)
{
    QProcess copy;
    startAnotherCopy(copy);
    EXPECT_TRUE(m_ours.isTakenElsewhere());
    EXPECT_FALSE(m_ours.take(m_reporter));
    copy.kill();
    ASSERT_TRUE(waitForEnd(copy));
    EXPECT_FALSE(m_ours.isTakenElsewhere());
    EXPECT_TRUE(m_ours.take(m_reporter));
}

TEST_F(UpdateLockTest, AnotherCopyIsKeptOutAndGetsTheLockAfterwards)
{
    UpdateLock::Hold hold = m_ours.take(m_reporter);
    QProcess copy;
    copy.start(QStringLiteral(UPDATE_LOCK_HOLDER), {file()});
    ASSERT_TRUE(waitForEnd(copy));
    EXPECT_EQ(copy.exitCode(), 1);
    hold.reset();
    startAnotherCopy(copy);
    copy.closeWriteChannel();
    ASSERT_TRUE(waitForEnd(copy));
    EXPECT_EQ(copy.exitCode(), 0);
    EXPECT_TRUE(m_ours.take(m_reporter));
}

TEST_F(UpdateLockTest, AToolThatWasStartedUnderTheLockDoesNotKeepIt)
{
    ScriptedTools tools;
    tools.write(QStringLiteral("tool"), tools.pause());
    UpdateLock::Hold hold = m_ours.take(m_reporter);
    QProcess tool;
    tool.start(tools.program(QStringLiteral("tool")), QStringList());
    ASSERT_TRUE(waitForStart(tool));
    hold.reset();
    EXPECT_EQ(tool.state(), QProcess::Running);
    EXPECT_TRUE(m_theirs.take(m_reporter));
    tools.letGoOn();
    EXPECT_TRUE(waitForEnd(tool));
}

TEST_F(UpdateLockTest, OfTwoSimultaneousAttemptsExactlyOneSucceeds)
{
    MeetingPoint point;
    std::atomic<int> got{0};
    int roundsWithOne = 0;
    const auto takeEachRound = [&](UpdateLock &lock, const std::function<void()> &count) {
        for (int i = 0; i < rounds; ++i) {
            point.meet();
            UpdateLock::Hold hold = lock.take(m_reporter);
            if (hold)
                ++got;
            point.meet();
            count();
            hold.reset();
            point.meet();
        }
    };
    std::thread theirs([&] { takeEachRound(m_theirs, [] {}); });
    takeEachRound(m_ours, [&] { roundsWithOne += got.exchange(0) == 1 ? 1 : 0; });
    theirs.join();
    EXPECT_EQ(roundsWithOne, rounds);
    EXPECT_EQ(m_reporter.logLines().size(), rounds);
}

TEST_F(UpdateLockTest, TwoThreadsOfOneCopyNeverRefuseEachOther)
{
    const auto takeOften = [this] {
        for (int i = 0; i < rounds; ++i)
            m_ours.take(m_reporter);
    };
    std::thread other(takeOften);
    takeOften();
    other.join();
    EXPECT_EQ(m_reporter.logLines(), QStringList());
    EXPECT_TRUE(m_theirs.take(m_reporter));
}

TEST_F(UpdateLockTest, ACopyThatOnlyAsksKeepsNobodyOut)
{
    std::atomic<bool> enough{false};
    std::atomic<int> seen{0};
    std::thread looker([&] {
        while (!enough)
            seen += m_theirs.isTakenElsewhere() ? 1 : 0;
    });
    UpdateLock::Hold hold = m_ours.take(m_reporter);
    EXPECT_TRUE(pollUntil([&] { return seen > 0; }));
    hold.reset();
    int refused = 0;
    for (int i = 0; i < rounds; ++i)
        refused += m_ours.take(m_reporter) ? 0 : 1;
    enough = true;
    looker.join();
    EXPECT_EQ(refused, 0);
}

struct Damage
{
    const char *name;
    QByteArray contents;
};

class DamagedUpdateLockTest : public UpdateLockTest, public testing::WithParamInterface<Damage>
{
};

TEST_P(DamagedUpdateLockTest, TheLockFilePreventsNoStart)
{
    ASSERT_TRUE(WholeFile::write(file(), GetParam().contents));
    UpdateLock::Hold hold = m_ours.take(m_reporter);
    EXPECT_TRUE(hold);
    EXPECT_FALSE(m_theirs.take(m_reporter));
    hold.reset();
    EXPECT_TRUE(m_theirs.take(m_reporter));
}

INSTANTIATE_TEST_SUITE_P(Each, DamagedUpdateLockTest,
                         testing::Values(Damage{"Empty", {}}, Damage{"ZeroFilled", QByteArray(512, '\0')},
                                         Damage{"Text", "not a lock\n"},
                                         Damage{"OfARunningProcess", "1\nprogram\nhost\n"},
                                         Damage{"Long", QByteArray(1000000, 'x')}),
                         [](const auto &damage) { return std::string(damage.param.name); });

} // namespace
