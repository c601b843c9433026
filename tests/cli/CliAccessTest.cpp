#include "tests/cli/LockedDevice.h"

namespace {

using namespace CliCases;

/// Runs the program without an administrator's right to open every file, with device files that their owner
/// has locked.
class CliAccessTest : public CliTest
{
protected:
    /// Starts the bus and locks the files of its device.
    void lock()
    {
        m_locked = lockDevice(scenario());
        ASSERT_FALSE(m_locked.isEmpty());
        ASSERT_EQ(stateInList(), QStringLiteral("ready"));
    }
    QString stateInList()
    {
        const QList<QJsonObject> devices = scenario().events(QStringLiteral("device"));
        return devices.value(0).value(QLatin1String("state")).toString();
    }

    const QString list = QStringLiteral("list");
    QStringList m_locked;
};

TEST_F(CliAccessTest, TheListShowsThatTheUserMayNotOpenTheDevice)
{
    ASSERT_NO_FATAL_FAILURE(lock());
    EXPECT_EQ(run({list}), 0);
    EXPECT_EQ(stateInList(), QStringLiteral("no-permission"));
}

TEST_F(CliAccessTest, AnUpdateEndsWithCodeFiveAndLeavesTheDeviceAlone)
{
    ASSERT_NO_FATAL_FAILURE(lock());
    EXPECT_EQ(run({update}), 5);
    expectResult("failed", "idle", "no-access", 5);
    expectUntouchedDevice();
    // The program does not wait: waiting would not help.
    EXPECT_EQ(run({update, QStringLiteral("--wait"), QStringLiteral("600")}), 5);
    expectResult("failed", "idle", "no-access", 5);
}

TEST_F(CliAccessTest, TheCheckNamesTheFile)
{
    ASSERT_NO_FATAL_FAILURE(lock());
    EXPECT_EQ(run({QStringLiteral("check")}), 5);
    QJsonObject finding;
    for (const QJsonObject &event : scenario().events(QStringLiteral("finding"))) {
        if (event.value(QLatin1String("what")) == QLatin1String("device-access"))
            finding = event;
    }
    EXPECT_EQ(finding.value(QLatin1String("verdict")).toString(), QStringLiteral("problem"));
    EXPECT_TRUE(finding.value(QLatin1String("text")).toString().contains(m_locked.first()))
        << finding.value(QLatin1String("text")).toString().toStdString();
}

} // namespace
