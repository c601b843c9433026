#include "support/ToolRun.h"
#include "support/ShutdownFlag.h"
#include "tests/support/ToldTools.h"

#include <QElapsedTimer>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

class ToolRunTest : public testing::Test
{
protected:
    void SetUp() override { m_timer.start(); }
    void TearDown() override { ShutdownFlag::instance().lower(); }

    ToolRun runTool(const QByteArray &steps, int limitMs, WhenLeaving whenLeaving = WhenLeaving::CutShort,
                    const ToolListener &listener = {})
    {
        m_tools.write(QStringLiteral("tool"), steps);
        return runToolToEnd(m_tools.program(QStringLiteral("tool")), {}, limitMs, whenLeaving, listener);
    }

    ToldTools m_tools;
    QElapsedTimer m_timer;
};

TEST_F(ToolRunTest, AToolThatEndsGivesItsOutputAndExitCode)
{
    const ToolRun run = runTool(Told::print("out\n") + Told::printError("err\n") + Told::exitWith(3), 10000);
    EXPECT_EQ(run.end, ToolRun::Finished);
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.standardOutput, "out\n");
    EXPECT_EQ(run.standardError, "err\n");
}

TEST_F(ToolRunTest, OfEndlessOutputOnlyTheFirstMebibyteIsKept)
{
    const ToolRun run = runTool(Told::print("first\n") + Told::flood(30000000), 60000);
    EXPECT_EQ(run.end, ToolRun::Finished);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.standardOutput.size(), 1024 * 1024);
    EXPECT_TRUE(run.standardOutput.startsWith("first\n"));
}

TEST_F(ToolRunTest, AListenerHearsEachPieceWhenItComesAndAllOfIt)
{
    QList<QByteArray> heard;
    QByteArray errors;
    ToolListener listener;
    listener.standardError = [&errors](const QByteArray &piece) {
        errors += piece;
    };
    // The tool goes on only when its first piece was heard.
    listener.standardOutput = [&](const QByteArray &piece) {
        heard.append(piece);
        m_tools.letGoOn();
    };
    const ToolRun run =
        runTool(Told::print("one\n") + m_tools.pause() + Told::print("two\n") + Told::printError("err\n"),
                30000, WhenLeaving::CutShort, listener);
    EXPECT_EQ(run.end, ToolRun::Finished);
    EXPECT_EQ(heard, (QList<QByteArray>{"one\n", "two\n"}));
    EXPECT_EQ(errors, "err\n");
    EXPECT_EQ(run.standardOutput, "one\ntwo\n");
}

TEST_F(ToolRunTest, AListenerHearsMoreThanIsKept)
{
    qint64 heard = 0;
    ToolListener listener;
    listener.standardOutput = [&heard](const QByteArray &piece) {
        heard += piece.size();
    };
    runTool(Told::flood(3000000), 30000, WhenLeaving::CutShort, listener);
    EXPECT_EQ(heard, 3000000);
}

TEST_F(ToolRunTest, ACrashIsAnEndWithoutAnExitCode)
{
    const ToolRun run = runTool(Told::crash(), 10000);
    EXPECT_EQ(run.end, ToolRun::Finished);
    EXPECT_TRUE(run.crashed);
    EXPECT_EQ(run.exitCode, -1);
    EXPECT_FALSE(runTool(Told::exitWith(1), 10000).crashed);
}

TEST_F(ToolRunTest, AMissingToolSaysWhy)
{
    const ToolRun run = runToolToEnd(QStringLiteral("/nowhere/tool"), {}, 10000);
    EXPECT_EQ(run.end, ToolRun::NotStarted);
    EXPECT_FALSE(run.errorString.isEmpty());
}

TEST_F(ToolRunTest, AToolThatNeverEndsIsKilledAtTheLimit)
{
    const ToolRun run = runTool(Told::hang(), 100);
    EXPECT_EQ(run.end, ToolRun::CutShort);
    EXPECT_LT(m_timer.elapsed(), 10000);
}

TEST_F(ToolRunTest, LeavingTheProgramCutsTheWait)
{
    QTimer::singleShot(50, [] { ShutdownFlag::instance().raise(); });
    const ToolRun run = runTool(Told::hang(), 60000);
    EXPECT_EQ(run.end, ToolRun::CutShort);
    EXPECT_LT(m_timer.elapsed(), 10000);
}

TEST_F(ToolRunTest, AToolThatMayTakeAnyTimeHasNoLimit)
{
    const ToolRun run = runTool(Told::sleepMs(300) + Told::print("late\n"), -1);
    EXPECT_EQ(run.end, ToolRun::Finished);
    EXPECT_EQ(run.standardOutput, "late\n");
}

TEST_F(ToolRunTest, WhatBelongsToTheLeavingRunsAlthoughTheProgramLeaves)
{
    ShutdownFlag::instance().raise();
    EXPECT_EQ(runTool(Told::sleepMs(200), 10000).end, ToolRun::CutShort);
    const ToolRun run = runTool(Told::sleepMs(200) + Told::print("done\n"), 10000, WhenLeaving::WaitOn);
    EXPECT_EQ(run.end, ToolRun::Finished);
    EXPECT_EQ(run.standardOutput, "done\n");
    EXPECT_EQ(runTool(Told::hang(), 100, WhenLeaving::WaitOn).end, ToolRun::CutShort);
}

TEST_F(ToolRunTest, WhatIsWokenMeanwhileCanTellThatAToolIsWaitedFor)
{
    EXPECT_FALSE(isWaitingForTool());
    m_tools.write(QStringLiteral("quick"), {});
    bool during = false;
    bool afterAnInnerOne = false;
    QTimer::singleShot(0, [&] {
        during = isWaitingForTool();
        runToolToEnd(m_tools.program(QStringLiteral("quick")), {}, 10000);
        afterAnInnerOne = isWaitingForTool();
    });
    runTool(Told::sleepMs(200), 10000);
    EXPECT_TRUE(during);
    EXPECT_TRUE(afterAnInnerOne);
    EXPECT_FALSE(isWaitingForTool());
}

} // namespace
