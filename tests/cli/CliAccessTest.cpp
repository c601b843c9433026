#include "tests/cli/LockedDevice.h"

namespace {

using namespace CliCases;

/// The program without an administrator's right to open everything, beside device files that their owner has
/// locked.
class CliAccessTest : public CliTest
{
protected:
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

TEST_F(CliAccessTest, TheListSaysThatTheUserMayNotOpenTheDevice)
{
    ASSERT_NO_FATAL_FAILURE(lock());
    EXPECT_EQ(run({list}), 0);
    EXPECT_EQ(stateInList(), QStringLiteral("no-permission"));
}

TEST_F(CliAccessTest, AnUpdateEndsWithFiveAndLeavesTheDeviceAlone)
{
    ASSERT_NO_FATAL_FAILURE(lock());
    EXPECT_EQ(run({update}), 5);
    expectResult("failed", "idle", "no-access", 5);
    expectUntouchedDevice();
    // Waiting does not help, and does not happen.
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
