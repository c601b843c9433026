#include "simulator/bus/BusDescription.h"

#include <gtest/gtest.h>

namespace {

struct WrongDescription
{
    const char *json;
    const char *says;
};

/// Prints the name of the test, which must be the same in all runs.
void PrintTo(const WrongDescription &wrong, std::ostream *out)
{
    *out << wrong.says;
}

class WrongBusDescriptionTest : public testing::TestWithParam<WrongDescription>
{
};

TEST_P(WrongBusDescriptionTest, IsRejectedWithTheReason)
{
    QString error;
    EXPECT_FALSE(BusDescription::parse(GetParam().json, &error).has_value());
    EXPECT_TRUE(error.contains(QString::fromUtf8(GetParam().says))) << error.toStdString();
}

#define IDS R"("application":{"vendorId":"0xF101","productId":"0xA001"})"
INSTANTIATE_TEST_SUITE_P(
    Table, WrongBusDescriptionTest,
    testing::Values(
        WrongDescription{"{", "no JSON"}, WrongDescription{"[]", "object"},
        WrongDescription{"{}", "\"devices\" must be a list"},
        WrongDescription{R"({"devices":[1]})", "must hold objects"},
        WrongDescription{R"({"devices":[{)" IDS "}]}", "\"key\""},
        WrongDescription{R"({"devices":[{"key":"a"}]})", "\"application\""},
        WrongDescription{R"({"devices":[{"key":"a","plugd":true,)" IDS "}]}", "unknown key \"plugd\""},
        WrongDescription{R"({"devices":[{"key":"a","start":"gone",)" IDS "}]}", "cannot be \"gone\""},
        WrongDescription{R"({"devices":[{"key":"a","position":126,)" IDS "}]}", "from 0 to 125"},
        WrongDescription{R"({"devices":[{"key":"a",)" IDS R"(},{"key":"a",)" IDS "}]}", "have the key"},
        WrongDescription{R"({"devices":[{"key":"a",)" IDS R"(},{"key":"b","position":0,)" IDS "}]}",
                         "have the position"},
        WrongDescription{R"({"devices":[{"key":"a","interfaces":[{"node":"n"},{"node":"n"}],)" IDS "}]}",
                         "have the node"},
        WrongDescription{R"({"devices":[{"key":"a","interfaces":[{"node":"../n"}],)" IDS "}]}",
                         "no plain file name"},
        WrongDescription{R"({"devices":[{"key":"a","onReport":{"action":"sing"},)" IDS "}]}",
                         "onReport: \"action\" cannot be \"sing\""},
        WrongDescription{R"({"devices":[{"key":"a","application":{"vendorId":"0x1F101"}}]})",
                         "from 1 to 65535"}));

TEST(BusDescriptionTest, ADeviceNeedsNoMoreThanItsKeyAndIds)
{
    const auto bus = BusDescription::parse(R"({"devices":[{"key":"a",)" IDS "}]}", nullptr);
    ASSERT_TRUE(bus.has_value());
    EXPECT_TRUE(bus->rootHub);
    ASSERT_EQ(bus->devices.size(), 1);
    const DeviceDescription &device = bus->devices.first();
    EXPECT_EQ(device.application.vendorId, 0xF101);
    EXPECT_EQ(device.application.productId, 0xA001);
    EXPECT_EQ(device.bootloader.vendorId, 0x33C3);
    EXPECT_EQ(device.bootloader.productId, 0x8899);
    EXPECT_EQ(device.start, DeviceDescription::Start::Application);
    ASSERT_EQ(device.nodes.size(), 1);
    EXPECT_TRUE(device.nodes.first().acceptsReport);
    EXPECT_EQ(device.nodes.first().node, QStringLiteral("hidraw0"));
}

TEST(BusDescriptionTest, DevicesAreSortedByTheirPositions)
{
    const auto bus = BusDescription::parse(R"({"devices":[{"key":"late","position":7,)" IDS
                                           R"(},{"key":"early","position":3,)" IDS "}]}",
                                           nullptr);
    ASSERT_TRUE(bus.has_value());
    EXPECT_EQ(bus->devices.at(0).key, QStringLiteral("early"));
    EXPECT_EQ(bus->devices.at(1).key, QStringLiteral("late"));
}

TEST(BusDescriptionTest, AnExplicitNodeNameIsNotUsedAgain)
{
    const auto bus = BusDescription::parse(
        R"({"devices":[{"key":"a","interfaces":[{},{"node":"hidraw0"}],)" IDS "}]}", nullptr);
    ASSERT_TRUE(bus.has_value());
    EXPECT_EQ(bus->devices.first().nodes.at(0).node, QStringLiteral("hidraw1"));
}

TEST(BusDescriptionTest, AWrongChangeOfBehaviourChangesNothing)
{
    auto bus = BusDescription::parse(R"({"devices":[{"key":"a",)" IDS "}]}", nullptr);
    ASSERT_TRUE(bus.has_value());
    DeviceDescription &device = bus->devices.first();
    const QJsonObject wrong{
        {QStringLiteral("onReport"), QJsonObject{{QStringLiteral("action"), QStringLiteral("stay")}}},
        {QStringLiteral("writes"), QJsonObject{{QStringLiteral("answer"), QStringLiteral("never")}}}};
    EXPECT_FALSE(device.applyBehaviour(wrong).isEmpty());
    EXPECT_EQ(device.onReport.action, ReportAnswer::Action::Bootloader);
}

} // namespace
