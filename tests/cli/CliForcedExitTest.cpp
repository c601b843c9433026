#include "tests/cli/CliTest.h"

namespace {

using namespace CliCases;

const QString unknownHost = QStringLiteral("never-found.invalid");

/// Runs the program with a library call that hangs and cannot be interrupted.
class CliForcedExitTest : public CliTest
{
protected:
    /// Makes the call hang. Call it before the first start.
    void interpose(const char *variable, const QString &value)
    {
        StagedProgram &program = scenario().program;
        program.setVariable(QStringLiteral("LD_PRELOAD"), QStringLiteral(CLOSE_INTERPOSER));
        program.setVariable(QStringLiteral("INTERPOSE_MARK"), mark());
        program.setVariable(QLatin1String(variable), value);
    }
    void waitUntilItHangs()
    {
        ASSERT_TRUE(pollUntil([&] { return QFile::exists(mark()); }));
    }
    void interruptAndExpectEnd(int exitCode)
    {
        interrupt();
        expectExitAtOnce(exitCode);
    }
    QString mark() { return scenario().program.workingFolder() + QLatin1String("/../hangs"); }
};

TEST_F(CliForcedExitTest, ANameLookupInAnUpdateDoesNotDelayAnInterruption)
{
    CliScenario &s = scenario();
    s.firmware.setField(s.model(), QStringLiteral("fileURL"),
                        QStringLiteral("http://%1/DevMaa.img").arg(unknownHost));
    interpose("INTERPOSE_HOST", unknownHost);
    start({update});
    waitUntilItHangs();
    interruptAndExpectEnd(130);
    expectResult("cancelled", "fetching", "interrupted", 130);
    expectUntouchedDevice();
}

TEST_F(CliForcedExitTest, AHangingBusDoesNotDelayAnInterruption)
{
    interpose("INTERPOSE_BUS", QStringLiteral("1"));
    start({update, QStringLiteral("--model"), scenario().model()});
    waitUntilItHangs();
    interruptAndExpectEnd(130);
    expectResult("cancelled", "idle", "interrupted", 130);
    EXPECT_EQ(lastEvent().value(QLatin1String("model")).toString(), scenario().model());
}

TEST_F(CliForcedExitTest, AHangingBusDoesNotDelayAnInterruptionOfAList)
{
    interpose("INTERPOSE_BUS", QStringLiteral("1"));
    start({QStringLiteral("list")});
    waitUntilItHangs();
    interruptAndExpectEnd(130);
}

TEST_F(CliForcedExitTest, ANameLookupDoesNotDelayTheEndOfACommandThatIsNotInterrupted)
{
    interpose("INTERPOSE_HOST", unknownHost);
    const QString address = QStringLiteral("http://%1/manifest.json").arg(unknownHost);
    EXPECT_EQ(run({QStringLiteral("manifest"), QStringLiteral("verify"), address}), 4);
    EXPECT_TRUE(QFile::exists(mark()));
}

} // namespace
