#include "harness/process/BoundProcess.h"
#include "harness/process/Polling.h"
#include "tests/common/AnotherAttempt.h"

#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <csignal>

namespace {

constexpr int pauseMs = 1500;

/// Runs tests of the program that stops itself.
class PausedSubjectTest : public testing::Test
{
protected:
    PausedSubjectTest() { dependsOnRealTime("how long the program is stopped, by this test alone"); }

    /// Runs the tests that match this filter. If `paused`, their process is stopped for a while in the first
    /// one.
    void run(const QString &filter, bool paused)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("QUILLMARSH_ATTEMPT"));
        if (paused)
            environment.insert(QStringLiteral("PAUSED_SUBJECT_STOPS"), QStringLiteral("1"));
        m_process.setProcessEnvironment(environment);
        ASSERT_TRUE(m_process.startAndWait(QStringLiteral(PAUSED_SUBJECT),
                                           {QStringLiteral("--gtest_filter=") + filter}, eventLimitMs));
        if (paused) {
            ASSERT_TRUE(pollUntil([this] { return isStopped() || !m_process.isRunning(); }));
            QThread::msleep(pauseMs);
            ::kill(static_cast<pid_t>(m_process.leaderId()), SIGCONT);
        }
        ASSERT_TRUE(waitForEnd(m_process));
        m_output = QString::fromUtf8(m_process.readAllStandardOutput());
    }
    bool passed() const
    {
        return m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
    }

    QString m_output;

private:
    bool isStopped()
    {
        QFile status(QStringLiteral("/proc/%1/stat").arg(m_process.leaderId()));
        return status.open(QIODevice::ReadOnly) && status.readAll().contains(") T ");
    }

    BoundProcess m_process;
};

struct Attempt
{
    const char *name;
    const char *filter;
    bool paused;
    bool passes;
    bool runsOnceMore;
};

void PrintTo(const Attempt &attempt, std::ostream *out)
{
    *out << attempt.name;
}

const Attempt attempts[] = {
    {"RunsOnceMoreWhenItDependsOnRealTime", "DeclaredTest.FailsInTheFirstAttempt", true, true, true},
    {"DoesNotRunOnceMoreWithoutAPause", "DeclaredTest.FailsInTheFirstAttempt", false, false, false},
    {"DoesNotRunOnceMoreWhenItDependsOnNothing", "UndeclaredTest.FailsInTheFirstAttempt", true, false, false},
    {"FailsWhenTheSecondAttemptFailsToo", "DeclaredTest.FailsInEveryAttempt", true, false, true},
    {"DoesNotRunOnceMoreBesideOneThatFailsForGood", "*.FailsInTheFirstAttempt", true, false, false},
};

class AnotherAttemptTest : public PausedSubjectTest, public testing::WithParamInterface<Attempt>
{
};

TEST_P(AnotherAttemptTest, AFailedTest)
{
    const Attempt &attempt = GetParam();
    ASSERT_NO_FATAL_FAILURE(run(QString::fromUtf8(attempt.filter), attempt.paused));
    EXPECT_EQ(passed(), attempt.passes) << m_output.toStdString();
    EXPECT_EQ(m_output.contains(QStringLiteral("[ PAUSED   ] Once more: ")), attempt.runsOnceMore)
        << m_output.toStdString();
    // The failure of the first attempt is never hidden.
    EXPECT_TRUE(m_output.contains(QStringLiteral("[  FAILED  ]")));
}

INSTANTIATE_TEST_SUITE_P(Of, AnotherAttemptTest, testing::ValuesIn(attempts),
                         [](const testing::TestParamInfo<Attempt> &each) {
                             return std::string(each.param.name);
                         });

using RunningTimeTest = PausedSubjectTest;

TEST_F(RunningTimeTest, APauseOfTheProcessDoesNotCount)
{
    ASSERT_NO_FATAL_FAILURE(run(QStringLiteral("ClockTest.IsPrinted"), true));
    const QRegularExpressionMatch times =
        QRegularExpression(QStringLiteral("wall (\\d+) running (\\d+) paused (\\d+)")).match(m_output);
    ASSERT_TRUE(times.hasMatch()) << m_output.toStdString();
    const qint64 wall = times.captured(1).toLongLong();
    EXPECT_GE(wall, pauseMs);
    EXPECT_LE(times.captured(2).toLongLong(), wall - pauseMs + 100) << m_output.toStdString();
    EXPECT_GE(times.captured(3).toLongLong(), pauseMs - 100) << m_output.toStdString();
}

TEST(RunningTimerTest, GoesOnWhileTheProcessRuns)
{
    QElapsedTimer wall;
    wall.start();
    const RunningTimer running;
    EXPECT_TRUE(pollUntil([&] { return running.elapsed() >= 200; }));
    EXPECT_GE(wall.elapsed(), 190);
}

TEST(RunningTimerTest, NeverGoesBackwards)
{
    const RunningTimer running;
    qint64 before = 0;
    while (!running.hasExpired(300)) {
        const qint64 now = running.elapsed();
        ASSERT_GE(now, before);
        before = now;
    }
}

TEST(RunningTimerTest, RestartReturnsTheElapsedTimeAndBeginsAtZero)
{
    RunningTimer running;
    QThread::msleep(60);
    const qint64 first = running.restart();
    EXPECT_GE(first, 20);
    EXPECT_LT(running.elapsed(), first + eventLimitMs);
    EXPECT_FALSE(running.hasExpired(eventLimitMs));
}

TEST(PollingTest, ATrueConditionIsEvaluatedOnceWhateverTheLimit)
{
    int asked = 0;
    EXPECT_TRUE(pollUntil([&asked] { return ++asked == 1; }, 0));
    EXPECT_EQ(asked, 1);
}

TEST(PollingTest, AFalseConditionTimesOut)
{
    QElapsedTimer wall;
    wall.start();
    EXPECT_FALSE(pollUntil([] { return false; }, 100));
    EXPECT_GE(wall.elapsed(), 90);
}

TEST(PollingTest, ABlockingWaitIsCalledInShortStepsUntilTheLimit)
{
    int steps = 0;
    int longest = 0;
    const auto wait = [&](int ms) {
        ++steps;
        longest = qMax(longest, ms);
        QThread::msleep(static_cast<unsigned long>(ms));
        return false;
    };
    EXPECT_FALSE(waitInShortSteps(wait, 300));
    EXPECT_GE(steps, 5);
    EXPECT_LE(longest, 50);
}

TEST(PollingTest, ABlockingWaitThatIsDoneEndsTheSteps)
{
    int steps = 0;
    EXPECT_TRUE(waitInShortSteps([&steps](int) { return ++steps == 3; }, eventLimitMs));
    EXPECT_EQ(steps, 3);
    EXPECT_FALSE(waitInShortSteps([&steps](int) { return ++steps > 100; }, 0));
    EXPECT_EQ(steps, 4) << "once, even if the limit is 0";
}

} // namespace
