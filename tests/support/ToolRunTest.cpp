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

    ToolRun runTool(const QByteArray &steps, int limitMs)
    {
        m_tools.write(QStringLiteral("tool"), steps);
        return runToolToEnd(m_tools.program(QStringLiteral("tool")), {}, limitMs);
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

TEST_F(ToolRunTest, ACrashIsAnEndWithoutAnExitCode)
{
    const ToolRun run = runTool(Told::crash(), 10000);
    EXPECT_EQ(run.end, ToolRun::Finished);
    EXPECT_EQ(run.exitCode, -1);
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

} // namespace
