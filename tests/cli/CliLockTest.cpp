#include "harness/BuildPaths.h"
#include "tests/cli/OtherCopy.h"

namespace {

using namespace CliCases;

/// Runs the program beside a copy of one of the two programs that holds the lock until it is killed.
class CliLockTest : public CliTest
{
protected:
    /// Expects that no update can begin while `other` runs, and that one succeeds afterwards.
    void expectNoUpdateDuring(OtherCopy &other)
    {
        const QString image = scenario().program.workingFolder() + QLatin1String("/../mine.img");
        ASSERT_TRUE(WholeFile::write(image, "mine"));
        const QStringList arguments{update, QStringLiteral("--model"), scenario().model(),
                                    QStringLiteral("--file"), image};
        EXPECT_EQ(run(arguments), 6);
        expectResult("failed", "idle", "another-copy", 6);
        EXPECT_TRUE(scenario().program.runs(usbFlasher).isEmpty());
        other.kill();
        EXPECT_EQ(run(arguments), 0);
        EXPECT_EQ(scenario().burned(), QByteArray("mine"));
    }
};

TEST_F(CliLockTest, AnotherCopyOfThisProgramPreventsAnUpdate)
{
    ASSERT_EQ(run({QStringLiteral("list")}), 0);
    OtherCopy other(scenario(), BuildPaths::commandLineProgram());
    ASSERT_TRUE(other.startAndWrite({update}));
    expectNoUpdateDuring(other);
}

TEST_F(CliLockTest, TheWindowProgramPreventsAnUpdate)
{
    ASSERT_EQ(run({QStringLiteral("list")}), 0);
    OtherCopy other(scenario(), BuildPaths::program());
    ASSERT_TRUE(other.startAndWrite({QStringLiteral("TessilonixUpDate"), scenario().model()}));
    expectNoUpdateDuring(other);
}

TEST_F(CliLockTest, ItPreventsAnUpdateOfTheWindowProgram)
{
    CliScenario &s = scenario();
    const QString other = QStringLiteral("DevMbu");
    s.devices.append(ModelOnBus::application(other));
    s.program.setControlList({s.model(), other}, {QStringLiteral("USB")});
    s.serverFaults = QStringList{QStringLiteral("stall:path=*DevMaa.img")};
    s.firmware.addModel(other, 5000);
    OtherCopy window(s, BuildPaths::program());
    window.program.setControlList({other}, {QStringLiteral("USB")});
    start({update, QStringLiteral("--model"), s.model()});
    ASSERT_TRUE(s.waitForEvent(inStage("fetching")));

    ASSERT_TRUE(window.start({QStringLiteral("TessilonixUpDate"), other}));
    EXPECT_TRUE(pollUntil([&] {
        return window.program.updateLog().contains(
            QLatin1String("Another copy of this program is updating a device."));
    }));
    EXPECT_TRUE(window.program.runs(usbFlasher).isEmpty());
}

} // namespace
