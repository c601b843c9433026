#include "tests/cli/CliTest.h"

namespace {

using namespace CliCases;

const QString repeat = QStringLiteral("--repeat");
const QString wait = QStringLiteral("--wait");

/// Updates one device after the other, as at a service desk.
class CliRepeatTest : public CliTest
{
protected:
    QStringList outcomes()
    {
        QStringList texts;
        for (const QJsonObject &result : scenario().events(QStringLiteral("result")))
            texts.append(result.value(QLatin1String("outcome")).toString());
        return texts;
    }
    /// Waits until `handled` devices have been updated or have failed, then replaces the last one by the
    /// next.
    void exchangeDeviceAfter(int handled)
    {
        CliScenario &s = scenario();
        ASSERT_TRUE(waitForMessage("Disconnect the device.", handled));
        if (outcomes().last() == QLatin1String("succeeded")) {
            ASSERT_TRUE(s.bus.waitForDevice(s.model(), application));
        }
        ASSERT_TRUE(s.bus.unplug(s.model()));
        ASSERT_TRUE(waitForMessage("Connect the next device.", handled + 1));
        ASSERT_TRUE(s.bus.plug(s.model()));
    }
    int burns() { return scenario().bus.device(scenario().model()).value(QLatin1String("burns")).toInt(); }
};

TEST_F(CliRepeatTest, EachDeviceIsUpdatedOnceUntilAnInterruption)
{
    start({update, repeat});
    ASSERT_NO_FATAL_FAILURE(exchangeDeviceAfter(1));
    ASSERT_TRUE(waitForMessage("Disconnect the device.", 2));
    // The updated device has restarted and must not be updated again.
    ASSERT_TRUE(scenario().bus.waitForDevice(scenario().model(), application));
    EXPECT_FALSE(pollUntil([&] { return outcomes().size() > 2; }, 2000));
    interrupt();
    EXPECT_EQ(waitForExit(), 0);
    EXPECT_EQ(outcomes(), (QStringList{QStringLiteral("succeeded"), QStringLiteral("succeeded")}));
    EXPECT_EQ(burns(), 2);
    EXPECT_EQ(scenario().burned(), scenario().image());
    EXPECT_TRUE(waitForMessage("2 updated, 0 failed."));
}

TEST_F(CliRepeatTest, AFailureIsCountedAndTheNextDeviceIsUpdated)
{
    CliScenario &s = scenario();
    s.program.setScript(
        usbFlasher, scriptFor(QStringLiteral("image"), {{step("exit", 1)}, {step("burn"), step("success")}}));
    start({update, repeat});
    ASSERT_NO_FATAL_FAILURE(exchangeDeviceAfter(1));
    ASSERT_TRUE(waitForMessage("Disconnect the device.", 2));
    interrupt();
    EXPECT_EQ(waitForExit(), 1);
    EXPECT_EQ(outcomes(), (QStringList{QStringLiteral("failed"), QStringLiteral("succeeded")}));
    EXPECT_TRUE(waitForMessage("1 updated, 1 failed."));
}

TEST_F(CliRepeatTest, WithoutANextDeviceInTimeTheExitCodeIsThatOfTheUpdates)
{
    CliScenario &s = scenario();
    start({update, repeat, wait, QStringLiteral("1")});
    ASSERT_TRUE(waitForMessage("Disconnect the device."));
    ASSERT_TRUE(s.bus.waitForDevice(s.model(), application));
    ASSERT_TRUE(s.bus.unplug(s.model()));
    EXPECT_EQ(waitForExit(), 0);
    EXPECT_EQ(outcomes(), QStringList{QStringLiteral("succeeded")});
    EXPECT_TRUE(waitForMessage("1 updated, 0 failed."));
}

TEST_F(CliRepeatTest, WithoutAnyDeviceInTimeItEndsWithCodeThree)
{
    CliScenario &s = scenario();
    s.devices[0].insert(QStringLiteral("start"), QStringLiteral("absent"));
    EXPECT_EQ(run({update, repeat, wait, QStringLiteral("1")}), 3);
    expectResult("failed", "idle", "no-device", 3);
}

TEST_F(CliRepeatTest, AnInterruptionBeforeTheFirstDeviceIsACancelledUpdate)
{
    CliScenario &s = scenario();
    s.devices[0].insert(QStringLiteral("start"), QStringLiteral("absent"));
    start({update, repeat});
    ASSERT_TRUE(waitForMessage("Connect the next device."));
    interrupt();
    EXPECT_EQ(waitForExit(), 130);
    expectResult("cancelled", "idle", "interrupted", 130);
}

TEST_F(CliRepeatTest, AnInterruptedUpdateIsNotCountedAsASuccess)
{
    CliScenario &s = scenario();
    s.serverFaults = QStringList{QStringLiteral("stall:path=*.json,nth=2")};
    start({update, repeat});
    ASSERT_NO_FATAL_FAILURE(exchangeDeviceAfter(1));
    ASSERT_TRUE(pollUntil([&] { return stages().count(QStringLiteral("fetching")) == 2; }));
    interrupt();
    EXPECT_EQ(waitForExit(), 130);
    EXPECT_EQ(lastEvent().value(QLatin1String("exitCode")).toInt(), 130);
    EXPECT_EQ(outcomes(), (QStringList{QStringLiteral("succeeded"), QStringLiteral("cancelled")}));
}

TEST_F(CliRepeatTest, OfSeveralBootloadersNoneIsWrittenAndTheNextDeviceIsAwaited)
{
    CliScenario &s = scenario();
    const QString other = QStringLiteral("DevMah");
    s.devices = {ModelOnBus::bootloader(s.model()), ModelOnBus::bootloader(other)};
    start({update, repeat, QStringLiteral("--model"), s.model()});
    ASSERT_TRUE(waitForMessage("More than one device waits in its bootloader"));
    ASSERT_TRUE(waitForMessage("Disconnect the device."));
    ASSERT_TRUE(s.bus.unplug(s.model()));
    ASSERT_TRUE(s.bus.unplug(other));
    ASSERT_TRUE(waitForMessage("Connect the next device.", 2));
    ASSERT_TRUE(s.bus.plug(s.model()));
    ASSERT_TRUE(waitForMessage("Disconnect the device.", 2));
    interrupt();
    EXPECT_EQ(waitForExit(), 1);
    EXPECT_EQ(outcomes(), (QStringList{QStringLiteral("failed"), QStringLiteral("succeeded")}));
    EXPECT_EQ(s.bus.device(other).value(QLatin1String("burns")).toInt(), 0);
}

} // namespace
