#include "harness/BuildPaths.h"
#include "harness/process/PlainHost.h"
#include "tests/cli/CliTest.h"

namespace {

using namespace CliCases;

/// A copy of one of the two programs that holds the lock until it is killed.
class CliLockTest : public CliTest
{
protected:
    Launch onBus(Launch launch)
    {
        const QJsonObject &bus = scenario().bus.environment();
        for (auto variable = bus.begin(); variable != bus.end(); ++variable)
            launch.environment.insert(variable.key(), variable.value().toString());
        return launch;
    }
    /// Starts it on the same bus, with a flasher that hangs. Returns whether it writes.
    bool startOther(StagedProgram &other, PlainHost &host, const QStringList &arguments)
    {
        other.addAllTools(other.system().standIn());
        other.setControlList({scenario().model()}, {QStringLiteral("USB")});
        other.setScript(usbFlasher, script({{step("hang")}}));
        scenario().program.shareUserOf(other);
        return host.run(onBus(other.launch(arguments))) &&
               pollUntil([&] { return other.runs(usbFlasher).size() == 1; });
    }
    /// Expects that the program is kept out while `host` runs, and let in afterwards.
    void expectKeptOut(PlainHost &host)
    {
        const QString image = scenario().program.workingFolder() + QLatin1String("/../mine.img");
        ASSERT_TRUE(WholeFile::write(image, "mine"));
        const QStringList arguments{update, QStringLiteral("--model"), scenario().model(),
                                    QStringLiteral("--file"), image};
        EXPECT_EQ(run(arguments), 6);
        expectResult("failed", "idle", "another-copy", 6);
        EXPECT_TRUE(scenario().program.runs(usbFlasher).isEmpty());
        host.killProgram();
        EXPECT_EQ(run(arguments), 0);
        EXPECT_EQ(scenario().burned(), QByteArray("mine"));
    }
};

TEST_F(CliLockTest, AnotherCopyOfThisProgramKeepsItOut)
{
    ASSERT_EQ(run({QStringLiteral("list")}), 0);
    StagedProgram other(BuildPaths::commandLineProgram());
    PlainHost host;
    ASSERT_TRUE(startOther(other, host, {update}));
    expectKeptOut(host);
}

TEST_F(CliLockTest, TheWindowProgramKeepsItOut)
{
    ASSERT_EQ(run({QStringLiteral("list")}), 0);
    StagedProgram other(BuildPaths::program());
    PlainHost host;
    ASSERT_TRUE(startOther(other, host, {QStringLiteral("TessilonixUpDate"), scenario().model()}));
    expectKeptOut(host);
}

TEST_F(CliLockTest, ItKeepsTheWindowProgramOut)
{
    CliScenario &s = scenario();
    const QString other = QStringLiteral("DevMbu");
    s.devices.append(ModelOnBus::application(other));
    s.program.setControlList({s.model(), other}, {QStringLiteral("USB")});
    s.serverFaults = QStringList{QStringLiteral("stall:path=*DevMaa.img")};
    s.firmware.addModel(other, 5000);
    StagedProgram window(BuildPaths::program());
    window.addAllTools(window.system().standIn());
    window.setControlList({other}, {QStringLiteral("USB")});
    s.program.shareUserOf(window);
    start({update, QStringLiteral("--model"), s.model()});
    ASSERT_TRUE(s.waitForEvent(inStage("fetching")));

    PlainHost host;
    ASSERT_TRUE(host.run(onBus(window.launch({QStringLiteral("TessilonixUpDate"), other}))));
    EXPECT_TRUE(pollUntil([&] {
        return window.updateLog().contains(
            QLatin1String("Another copy of this program is updating a device."));
    }));
    EXPECT_TRUE(window.runs(usbFlasher).isEmpty());
}

} // namespace
