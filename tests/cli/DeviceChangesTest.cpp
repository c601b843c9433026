#include "checks/DeviceSearch.h"

#include "cli/output/DeviceStates.h"
#include "tests/common/TextList.h"

#include <gtest/gtest.h>

namespace {

using State = DeviceInfo::State;

DeviceInfo device(const char *position, State state = State::Ready, quint32 productId = 1)
{
    DeviceInfo device;
    device.position = QLatin1String(position);
    device.productId = productId;
    device.state = state;
    return device;
}

/// Returns "POSITION STATE" of each change, after a "-" if the device was disconnected.
QStringList changes(const QVector<DeviceInfo> &before, const QVector<DeviceInfo> &after)
{
    QStringList texts;
    for (const DeviceInfo &change : changesBetween(before, after))
        texts.append((change.connected ? QString() : QStringLiteral("-")) + change.position +
                     QLatin1Char(' ') + DeviceStates::nameOf(change.state));
    return texts;
}

TEST(DeviceChangesTest, UnchangedDevicesAreNotReported)
{
    EXPECT_EQ(changes({}, {}), QStringList());
    EXPECT_EQ(changes({device("1-1"), device("1-2")}, {device("1-2"), device("1-1")}), QStringList());
}

TEST(DeviceChangesTest, DevicesThatComeAndGoAreReported)
{
    EXPECT_EQ(changes({}, {device("1-1"), device("1-2")}), list({"1-1 ready", "1-2 ready"}));
    EXPECT_EQ(changes({device("1-1"), device("1-2")}, {device("1-2")}), list({"-1-1 ready"}));
    EXPECT_EQ(changes({device("1-1")}, {device("1-2")}), list({"-1-1 ready", "1-2 ready"}));
}

TEST(DeviceChangesTest, AChangeOfStateIsReportedOnceAndNotAsADisconnection)
{
    EXPECT_EQ(changes({device("1-1", State::NoPermission)}, {device("1-1")}), list({"1-1 ready"}));
}

TEST(DeviceChangesTest, ADeviceThatEntersItsBootloaderIsReportedAsGoneAndTheBootloaderAsNew)
{
    EXPECT_EQ(changes({device("1-1")}, {device("1-1", State::InBootloader, 2)}),
              list({"-1-1 ready", "1-1 bootloader"}));
}

TEST(DeviceChangesTest, OfTwoAlikeDevicesWithoutAPositionTheChangedOneIsReported)
{
    EXPECT_EQ(changes({device(""), device("")}, {device("")}), list({"- ready"}));
    EXPECT_EQ(changes({device("")}, {device(""), device("")}), list({" ready"}));
    EXPECT_EQ(changes({device(""), device("")}, {device(""), device("")}), QStringList());
}

} // namespace
