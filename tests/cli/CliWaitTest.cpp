#include "tests/cli/CliTest.h"

#include <csignal>

namespace {

using namespace CliCases;

/// An interruption while no device is connected. Not run under Wine: the program does not end there, and it
/// is not known whether Wine or the program is the cause.
class CliWaitTest : public CliTest
{
};

TEST_F(CliWaitTest, AnInterruptionWhileWaitingForADeviceEndsTheProgramAtOnce)
{
    CliScenario &s = scenario();
    s.devices[0].insert(QStringLiteral("start"), QStringLiteral("absent"));
    start({update, QStringLiteral("--wait"), QStringLiteral("600")});
    ASSERT_TRUE(pollUntil(
        [&] { return s.program.standardError().contains(QLatin1String("Waiting for a device.")); }));
    const RunningTimer sinceSignal;
    ASSERT_EQ(kill(static_cast<pid_t>(s.bus.programId()), SIGINT), 0);
    EXPECT_EQ(waitForExit(), 130);
    EXPECT_LE(sinceSignal.elapsed(), exitLimitMs());
    expectResult("cancelled", "idle", "interrupted", 130);
}

} // namespace
