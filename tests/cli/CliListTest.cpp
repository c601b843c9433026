#include "tests/cli/CliTest.h"

namespace {

using namespace CliCases;

const QString list = QStringLiteral("list");

class CliListTest : public CliTest
{
protected:
    /// Returns "MODEL STATE" of each device event, after a "-" if the device was disconnected.
    QStringList shownDevices()
    {
        QStringList texts;
        for (const QJsonObject &device : scenario().events(QStringLiteral("device")))
            texts.append(
                (device.value(QLatin1String("connected")).toBool() ? QString() : QStringLiteral("-")) +
                device.value(QLatin1String("model")).toString() + QLatin1Char(' ') +
                device.value(QLatin1String("state")).toString());
        return texts;
    }
    bool waitForDevices(const QStringList &wanted)
    {
        return pollUntil([&] { return shownDevices() == wanted; }, eventLimitMs, 50);
    }
};

TEST_F(CliListTest, EachDeviceIsListedWithItsStateAndAPositionOfItsOwn)
{
    CliScenario &s = scenario();
    s.withServer = false;
    s.devices = {
        ModelOnBus::application(QStringLiteral("DevMaa")), ModelOnBus::application(QStringLiteral("DevMdq")),
        ModelOnBus::application(QStringLiteral("DevMbu")), ModelOnBus::bootloader(QStringLiteral("DevMah"))};
    s.program.setControlList({QStringLiteral("DevMaa"), QStringLiteral("DevMdq"), QStringLiteral("DevMah")},
                             {QStringLiteral("USB")});
    EXPECT_EQ(run({list}), 0);
    EXPECT_EQ(shownDevices(),
              (QStringList{QStringLiteral("DevMaa ready"), QStringLiteral("DevMdq iap"),
                           QStringLiteral("DevMbu switched-off"), QStringLiteral(" bootloader")}));
    QStringList positions;
    for (const QJsonObject &device : s.events(QStringLiteral("device")))
        positions.append(device.value(QLatin1String("position")).toString());
    EXPECT_FALSE(positions.contains(QString()));
    EXPECT_EQ(positions.removeDuplicates(), 0);
}

TEST_F(CliListTest, TheTextHasPositionIdsModelAndState)
{
    CliScenario &s = scenario();
    EXPECT_EQ(run({list}), 0);
    const QJsonObject device = s.events(QStringLiteral("device")).value(0);
    EXPECT_EQ(runWithTextOutput({list}), 0);
    EXPECT_EQ(s.program.standardOutput(), QStringLiteral("%1  %2:%3  DevMaa  ready\n")
                                              .arg(device.value(QLatin1String("position")).toString(),
                                                   device.value(QLatin1String("vendorId")).toString(),
                                                   device.value(QLatin1String("productId")).toString()));
    EXPECT_EQ(s.program.standardError(), QString());
}

TEST_F(CliListTest, AnEmptyBusIsNotAFailure)
{
    CliScenario &s = scenario();
    s.devices = {};
    EXPECT_EQ(run({list}), 0);
    EXPECT_EQ(shownDevices(), QStringList());
    EXPECT_EQ(runWithTextOutput({list}), 0);
    EXPECT_EQ(s.program.standardOutput(),
              QStringLiteral("No device that this program knows is connected.\n"));
    EXPECT_EQ(runWithTextOutput({list, QStringLiteral("--lang"), QStringLiteral("zh")}), 0);
    EXPECT_EQ(s.program.standardOutput(), QStringLiteral("没有连接已知的设备。\n"));
}

TEST_F(CliListTest, WatchingShowsDevicesThatComeAndGoUntilItIsInterrupted)
{
    CliScenario &s = scenario();
    start({list, QStringLiteral("--watch")});
    QStringList wanted{QStringLiteral("DevMaa ready")};
    ASSERT_TRUE(waitForDevices(wanted));
    ASSERT_TRUE(s.bus.unplug(s.model()));
    wanted.append(QStringLiteral("-DevMaa ready"));
    EXPECT_TRUE(waitForDevices(wanted));
    ASSERT_TRUE(s.bus.plugBootloader(s.model()));
    wanted.append(QStringLiteral(" bootloader"));
    EXPECT_TRUE(waitForDevices(wanted));
    ASSERT_TRUE(s.bus.unplug(s.model()));
    wanted.append(QStringLiteral("- bootloader"));
    EXPECT_TRUE(waitForDevices(wanted));
    ASSERT_TRUE(s.bus.plug(s.model()));
    wanted.append(QStringLiteral("DevMaa ready"));
    EXPECT_TRUE(waitForDevices(wanted));
    EXPECT_TRUE(s.bus.programState().running);
    interrupt();
    EXPECT_EQ(waitForExit(), 0);
    EXPECT_EQ(shownDevices(), wanted);
}

} // namespace
