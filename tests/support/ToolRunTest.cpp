#include "support/process/ToolRun.h"
#include "simulator/time/RunningTime.h"
#include "support/process/ShutdownFlag.h"
#include "tests/common/AnotherAttempt.h"
#include "tests/common/LeapingClock.h"
#include "tests/common/ScriptedTools.h"

#include <QTimer>

#include <gtest/gtest.h>

namespace {

class ToolRunTest : public testing::Test
{
protected:
    void TearDown() override { ShutdownFlag::instance().lower(); }

    ToolRun runTool(const ToolSteps &steps, int limitMs, OnShutdown onShutdown = OnShutdown::Kill,
                    const ToolListener &listener = {})
    {
        m_tools.write(QStringLiteral("tool"), steps);
        return runToolToEnd(m_tools.program(QStringLiteral("tool")), {}, limitMs, onShutdown, listener);
    }

    ScriptedTools m_tools;
    const RunningTimer m_timer;
};

TEST_F(ToolRunTest, AFinishedToolHasItsOutputAndExitCode)
{
    const ToolRun run =
        runTool(ToolStep::print("out\n") + ToolStep::printError("err\n") + ToolStep::exitWith(3), 10000);
    EXPECT_EQ(run.end, ToolRun::Finished);
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.standardOutput, "out\n");
    EXPECT_EQ(run.standardError, "err\n");
}

TEST_F(ToolRunTest, OfEndlessOutputOnlyTheFirstMebibyteIsKept)
{
    const ToolRun run = runTool(ToolStep::print("first\n") + ToolStep::flood(30000000), 60000);
    EXPECT_EQ(run.end, ToolRun::Finished);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.standardOutput.size(), 1024 * 1024);
    EXPECT_TRUE(run.standardOutput.startsWith("first\n"));
}

TEST_F(ToolRunTest, AListenerReceivesEachPieceAsItArrivesAndAllOfThem)
{
    QList<QByteArray> heard;
    QByteArray errors;
    ToolListener listener;
    listener.standardError = [&errors](const QByteArray &piece) {
        errors += piece;
    };
    // The tool continues only after its first piece was received.
    listener.standardOutput = [&](const QByteArray &piece) {
        heard.append(piece);
        m_tools.letGoOn();
    };
    const ToolRun run = runTool(ToolStep::print("one\n") + m_tools.pause() + ToolStep::print("two\n") +
                                    ToolStep::printError("err\n"),
                                30000, OnShutdown::Kill, listener);
    EXPECT_EQ(run.end, ToolRun::Finished);
    EXPECT_EQ(heard, (QList<QByteArray>{"one\n", "two\n"}));
    EXPECT_EQ(errors, "err\n");
    EXPECT_EQ(run.standardOutput, "one\ntwo\n");
}

TEST_F(ToolRunTest, AListenerReceivesMoreThanIsKept)
{
    qint64 heard = 0;
    ToolListener listener;
    listener.standardOutput = [&heard](const QByteArray &piece) {
        heard += piece.size();
    };
    runTool(ToolStep::flood(3000000), 30000, OnShutdown::Kill, listener);
    EXPECT_EQ(heard, 3000000);
}

TEST_F(ToolRunTest, ACrashIsAnEndWithoutAnExitCode)
{
    const ToolRun run = runTool(ToolStep::crash(), 10000);
    EXPECT_EQ(run.end, ToolRun::Finished);
    EXPECT_TRUE(run.crashed);
    EXPECT_EQ(run.exitCode, -1);
    EXPECT_FALSE(runTool(ToolStep::exitWith(1), 10000).crashed);
}

TEST_F(ToolRunTest, AMissingToolHasAnErrorText)
{
    const ToolRun run = runToolToEnd(QStringLiteral("/nowhere/tool"), {}, 10000);
    EXPECT_EQ(run.end, ToolRun::NotStarted);
    EXPECT_FALSE(run.errorString.isEmpty());
}

TEST_F(ToolRunTest, AToolThatNeverEndsIsKilledAtTheLimitAndNotBefore)
{
    m_tools.write(QStringLiteral("tool"), ToolStep::hang());
    for (const OnShutdown onShutdown : {OnShutdown::Kill, OnShutdown::KeepWaiting}) {
        const LeapingClock clock(1000);
        const ToolRun run =
            runToolToEnd(m_tools.program(QStringLiteral("tool")), {}, 30000, onShutdown, {}, clock);
        EXPECT_EQ(run.end, ToolRun::Killed);
        // Readings of the clock while the tool starts do not count towards its limit.
        EXPECT_GE(clock.lastMs(), 32000);
        EXPECT_LE(clock.lastMs(), 63000);
    }
}

TEST_F(ToolRunTest, ALimitOnTheRealClockEndsATool)
{
    dependsOnRealTime("a limit of 100 ms for a tool, which also holds for its start");
    EXPECT_EQ(runTool(ToolStep::hang(), 100).end, ToolRun::Killed);
    EXPECT_LT(m_timer.elapsed(), 10000);
}

TEST_F(ToolRunTest, ShuttingDownEndsTheWait)
{
    QTimer::singleShot(50, [] { ShutdownFlag::instance().raise(); });
    const ToolRun run = runTool(ToolStep::hang(), 60000);
    EXPECT_EQ(run.end, ToolRun::Killed);
    EXPECT_LT(m_timer.elapsed(), 10000);
}

TEST_F(ToolRunTest, AToolThatMayTakeAnyTimeHasNoLimit)
{
    const RacingClock days;
    m_tools.write(QStringLiteral("tool"), ToolStep::sleepMs(300) + ToolStep::print("late\n"));
    const ToolRun run =
        runToolToEnd(m_tools.program(QStringLiteral("tool")), {}, -1, OnShutdown::Kill, {}, days);
    EXPECT_EQ(run.end, ToolRun::Finished);
    EXPECT_EQ(run.standardOutput, "late\n");
}

TEST_F(ToolRunTest, AToolThatIsAPartOfTheShutdownRunsToItsEnd)
{
    dependsOnRealTime("a limit of 100 ms for a tool, which also holds for its start");
    ShutdownFlag::instance().raise();
    EXPECT_EQ(runTool(ToolStep::hang(), 10000).end, ToolRun::Killed);
    const ToolRun run =
        runTool(ToolStep::sleepMs(200) + ToolStep::print("done\n"), 10000, OnShutdown::KeepWaiting);
    EXPECT_EQ(run.end, ToolRun::Finished);
    EXPECT_EQ(run.standardOutput, "done\n");
    EXPECT_EQ(runTool(ToolStep::hang(), 100, OnShutdown::KeepWaiting).end, ToolRun::Killed);
}

TEST_F(ToolRunTest, EventHandlersCanDetectThatAToolIsWaitedFor)
{
    EXPECT_FALSE(isWaitingForTool());
    m_tools.write(QStringLiteral("quick"), {});
    bool during = false;
    bool afterAnInnerOne = false;
    QTimer::singleShot(0, [&] {
        during = isWaitingForTool();
        runToolToEnd(m_tools.program(QStringLiteral("quick")), {}, 10000);
        afterAnInnerOne = isWaitingForTool();
        m_tools.letGoOn();
    });
    runTool(m_tools.pause(), 60000);
    EXPECT_TRUE(during);
    EXPECT_TRUE(afterAnInnerOne);
    EXPECT_FALSE(isWaitingForTool());
}

} // namespace
