#include "support/ToolRun.h"
#include "support/ShutdownFlag.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

ToolRun shell(const QString &command, int limitMs)
{
    return runToolToEnd(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), command}, limitMs);
}

class ToolRunTest : public testing::Test
{
protected:
    void SetUp() override { m_timer.start(); }
    void TearDown() override { ShutdownFlag::instance().lower(); }

    QElapsedTimer m_timer;
    QTemporaryDir m_folder;
};

TEST_F(ToolRunTest, AToolThatEndsGivesItsOutputAndExitCode)
{
    const ToolRun run = shell(QStringLiteral("echo out; echo err >&2; exit 3"), 10000);
    EXPECT_EQ(run.end, ToolRun::Finished);
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.standardOutput, "out\n");
    EXPECT_EQ(run.standardError, "err\n");
}

TEST_F(ToolRunTest, OfEndlessOutputOnlyTheFirstMebibyteIsKept)
{
    const ToolRun run = shell(QStringLiteral("echo first; head -c 30000000 /dev/zero"), 60000);
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
    const QString goOn = m_folder.filePath(QStringLiteral("go-on"));
    listener.standardOutput = [&](const QByteArray &piece) {
        heard.append(piece);
        EXPECT_TRUE(QFile(goOn).open(QIODevice::WriteOnly));
    };
    const QString command =
        QStringLiteral("echo one; until [ -e '%1' ]; do sleep 0.01; done; echo two; echo err >&2");
    const ToolRun run = runToolToEnd(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), command.arg(goOn)},
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
    runToolToEnd(QStringLiteral("/bin/sh"),
                 {QStringLiteral("-c"), QStringLiteral("head -c 3000000 /dev/zero")}, 30000,
                 WhenLeaving::CutShort, listener);
    EXPECT_EQ(heard, 3000000);
}

TEST_F(ToolRunTest, ACrashIsAnEndWithoutAnExitCode)
{
    const ToolRun run = shell(QStringLiteral("kill -SEGV $$"), 10000);
    EXPECT_EQ(run.end, ToolRun::Finished);
    EXPECT_TRUE(run.crashed);
    EXPECT_EQ(run.exitCode, -1);
    EXPECT_FALSE(shell(QStringLiteral("exit 1"), 10000).crashed);
}

TEST_F(ToolRunTest, AMissingToolSaysWhy)
{
    const ToolRun run = runToolToEnd(QStringLiteral("/nowhere/tool"), {}, 10000);
    EXPECT_EQ(run.end, ToolRun::NotStarted);
    EXPECT_FALSE(run.errorString.isEmpty());
}

TEST_F(ToolRunTest, AToolThatNeverEndsIsKilledAtTheLimit)
{
    const ToolRun run = shell(QStringLiteral("exec sleep 60"), 100);
    EXPECT_EQ(run.end, ToolRun::CutShort);
    EXPECT_LT(m_timer.elapsed(), 10000);
}

TEST_F(ToolRunTest, LeavingTheProgramCutsTheWait)
{
    QTimer::singleShot(50, [] { ShutdownFlag::instance().raise(); });
    const ToolRun run = shell(QStringLiteral("exec sleep 60"), 60000);
    EXPECT_EQ(run.end, ToolRun::CutShort);
    EXPECT_LT(m_timer.elapsed(), 10000);
}

TEST_F(ToolRunTest, AToolThatMayTakeAnyTimeHasNoLimit)
{
    const ToolRun run = shell(QStringLiteral("sleep 0.3; echo late"), -1);
    EXPECT_EQ(run.end, ToolRun::Finished);
    EXPECT_EQ(run.standardOutput, "late\n");
}

TEST_F(ToolRunTest, WhatBelongsToTheLeavingRunsAlthoughTheProgramLeaves)
{
    ShutdownFlag::instance().raise();
    EXPECT_EQ(shell(QStringLiteral("sleep 0.2"), 10000).end, ToolRun::CutShort);
    const auto waitOn = [](const QString &command, int limitMs) {
        return runToolToEnd(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), command}, limitMs,
                            WhenLeaving::WaitOn);
    };
    const ToolRun run = waitOn(QStringLiteral("sleep 0.2; echo done"), 10000);
    EXPECT_EQ(run.end, ToolRun::Finished);
    EXPECT_EQ(run.standardOutput, "done\n");
    EXPECT_EQ(waitOn(QStringLiteral("exec sleep 60"), 100).end, ToolRun::CutShort);
}

TEST_F(ToolRunTest, WhatIsWokenMeanwhileCanTellThatAToolIsWaitedFor)
{
    EXPECT_FALSE(isWaitingForTool());
    bool during = false;
    bool afterAnInnerOne = false;
    QTimer::singleShot(0, [&] {
        during = isWaitingForTool();
        shell(QStringLiteral("true"), 10000);
        afterAnInnerOne = isWaitingForTool();
    });
    shell(QStringLiteral("sleep 0.2"), 10000);
    EXPECT_TRUE(during);
    EXPECT_TRUE(afterAnInnerOne);
    EXPECT_FALSE(isWaitingForTool());
}

} // namespace
