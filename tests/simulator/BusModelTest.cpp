#include "simulator/bus/BusModel.h"
#include "simulator/bus/UpdateModeReport.h"

#include <gtest/gtest.h>

namespace {

using Presence = BusModel::Presence;

constexpr auto twoDevices = R"({"devices":[
    {"key":"a","application":{"vendorId":"0xF101","productId":"0xA001"},
     "interfaces":[{"number":0},{"number":1,"acceptsReport":true}],
     "onReport":{"leaveAfterMs":10,"afterMs":100},"onReset":{"leaveAfterMs":10,"afterMs":100}},
    {"key":"b","application":{"vendorId":"0xF102","productId":"0xA002"},"start":"absent"}]})";

class BusModelTest : public testing::Test
{
protected:
    Presence presence(int device = 0) const { return m_bus.devices().at(device).presence; }
    void change(const char *part, const QJsonObject &to)
    {
        ASSERT_EQ(m_bus.applyBehaviour(0, {{QString::fromLatin1(part), to}}), QString());
    }
    /// Returns whether the device enters its bootloader.
    bool enters(int node, const QByteArray &report)
    {
        EXPECT_EQ(m_bus.write(0, node, report, 0).count, report.size());
        m_bus.advance(100000);
        return presence() == Presence::Bootloader;
    }

    const QByteArray m_right = updateModeReport(ReportAnswer::Layout::A);
    BusModel m_bus{*BusDescription::parse(twoDevices, nullptr)};
};

TEST_F(BusModelTest, TheReportIsTheReportIdTheCommandAndZerosUpTo513Bytes)
{
    EXPECT_EQ(m_right, QByteArray::fromHex("0443525400004150504e4557") + QByteArray(501, '\0'));
    EXPECT_EQ(updateModeReport(ReportAnswer::Layout::B),
              QByteArray::fromHex("43525400004150504e4557") + QByteArray(502, '\0'));
}

TEST_F(BusModelTest, TheRightReportTakesTheDeviceOffTheBusAndBringsItBackAsABootloader)
{
    EXPECT_EQ(m_bus.write(0, 1, m_right, 1000).count, 513);
    m_bus.advance(1009);
    EXPECT_EQ(presence(), Presence::Application);
    m_bus.advance(1010);
    EXPECT_EQ(presence(), Presence::Absent);
    m_bus.advance(1109);
    EXPECT_EQ(presence(), Presence::Absent);
    EXPECT_EQ(m_bus.nextChange().value_or(0), 1110);
    m_bus.advance(1110);
    EXPECT_EQ(presence(), Presence::Bootloader);
    EXPECT_FALSE(m_bus.nextChange().has_value());
    EXPECT_EQ(m_bus.devices().first().appearance, 2);
}

TEST_F(BusModelTest, TheRightReportOnAnotherInterfaceDoesNothing)
{
    EXPECT_FALSE(enters(0, m_right));
    EXPECT_EQ(m_bus.devices().first().reports.size(), 1);
}

TEST_F(BusModelTest, AReportThatIsAByteShortOrLongDoesNothing)
{
    EXPECT_FALSE(enters(1, m_right.left(512)));
    EXPECT_FALSE(enters(1, m_right + '\0'));
}

TEST_F(BusModelTest, AReportWithAnyOneByteWrongDoesNothing)
{
    for (int i = 0; i < m_right.size(); ++i) {
        QByteArray wrong = m_right;
        wrong[i] = static_cast<char>(wrong.at(i) ^ 1);
        ASSERT_FALSE(enters(1, wrong)) << i;
    }
}

TEST_F(BusModelTest, TheOtherLayoutWorksOnlyIfItIsConfigured)
{
    const QByteArray shifted = updateModeReport(ReportAnswer::Layout::B);
    EXPECT_FALSE(enters(1, shifted));
    change("onReport", {{QStringLiteral("layout"), QStringLiteral("B")}});
    EXPECT_FALSE(enters(1, m_right));
    EXPECT_TRUE(enters(1, shifted));
}

TEST_F(BusModelTest, ADeviceThatStaysOrVanishesNeverBecomesABootloader)
{
    change("onReport", {{QStringLiteral("action"), QStringLiteral("stay")}});
    EXPECT_FALSE(enters(1, m_right));
    EXPECT_EQ(presence(), Presence::Application);
    change("onReport", {{QStringLiteral("action"), QStringLiteral("vanish")}});
    EXPECT_FALSE(enters(1, m_right));
    EXPECT_EQ(presence(), Presence::Absent);
}

TEST_F(BusModelTest, AFailedOrShortWriteDoesNotReachTheDevice)
{
    using Failure = BusModel::WriteResult::Failure;
    const auto answer = [this](const QJsonObject &writes) {
        change("writes", writes);
        const auto result = m_bus.write(0, 1, m_right, 0);
        m_bus.advance(100000);
        EXPECT_EQ(presence(), Presence::Application);
        EXPECT_TRUE(m_bus.devices().first().reports.isEmpty());
        return std::make_pair(result.count, result.failure);
    };
    EXPECT_EQ(answer({{QStringLiteral("answer"), QStringLiteral("refused")}}),
              std::make_pair(-1, Failure::Refused));
    EXPECT_EQ(answer({{QStringLiteral("answer"), QStringLiteral("error")}}),
              std::make_pair(-1, Failure::Broken));
    EXPECT_EQ(answer({{QStringLiteral("answer"), QStringLiteral("short")}, {QStringLiteral("count"), 64}}),
              std::make_pair(64, Failure::None));
    EXPECT_EQ(answer({{QStringLiteral("answer"), QStringLiteral("short")}, {QStringLiteral("count"), 0}}),
              std::make_pair(0, Failure::None));
}

TEST_F(BusModelTest, AWriteToADeviceThatIsNotThereFails)
{
    m_bus.unplug(0);
    EXPECT_EQ(m_bus.write(0, 1, m_right, 0).failure, BusModel::WriteResult::Failure::Gone);
}

TEST_F(BusModelTest, BurningAndResettingNeedABootloader)
{
    EXPECT_FALSE(m_bus.burn(-1, "image").has_value());
    EXPECT_FALSE(m_bus.reset(-1, 0).has_value());
    EXPECT_EQ(m_bus.devices().first().burns, 0);
    ASSERT_TRUE(enters(1, m_right));
    EXPECT_FALSE(m_bus.burn(1, "image").has_value());
    EXPECT_EQ(m_bus.burn(-1, "image").value_or(-1), 0);
    EXPECT_EQ(m_bus.devices().first().received, "image");
    EXPECT_EQ(m_bus.devices().first().burns, 1);
}

TEST_F(BusModelTest, OnlyAMicrocontrollerThatRunsItsApplicationCanBeProgrammed)
{
    EXPECT_FALSE(m_bus.program(0, "image"));
    BusModel bus{*BusDescription::parse(
        R"({"devices":[{"key":"m","programmable":true,
            "application":{"vendorId":"0xF113","productId":"0xA05A"}}]})",
        nullptr)};
    EXPECT_FALSE(bus.burn(-1, "image").has_value());
    EXPECT_TRUE(bus.program(0, "image"));
    EXPECT_EQ(bus.devices().first().received, "image");
    EXPECT_EQ(bus.devices().first().burns, 1);
    bus.unplug(0);
    EXPECT_FALSE(bus.program(0, "another"));
    EXPECT_EQ(bus.devices().first().received, "image");
    EXPECT_EQ(m_bus.devices().first().burns, 0);
}

TEST_F(BusModelTest, AResetBringsTheDeviceBackAsItself)
{
    ASSERT_TRUE(enters(1, m_right));
    EXPECT_EQ(m_bus.reset(-1, 200000).value_or(-1), 0);
    m_bus.advance(200010);
    EXPECT_EQ(presence(), Presence::Absent);
    m_bus.advance(200110);
    EXPECT_EQ(presence(), Presence::Application);
    EXPECT_EQ(m_bus.devices().first().resets, 1);
}

TEST_F(BusModelTest, ADeviceUnpluggedOnItsWayIntoTheBootloaderDoesNotComeBack)
{
    m_bus.write(0, 1, m_right, 0);
    m_bus.advance(50);
    EXPECT_FALSE(m_bus.unplug(0)); // it had left already
    m_bus.advance(100000);
    EXPECT_EQ(presence(), Presence::Absent);
}

TEST_F(BusModelTest, OfTwoBootloadersTheFirstInBusOrderIsUsed)
{
    EXPECT_TRUE(m_bus.plug(1, Presence::Bootloader));
    EXPECT_EQ(m_bus.bootloader().value_or(-1), 1);
    ASSERT_TRUE(enters(1, m_right));
    EXPECT_EQ(m_bus.bootloader().value_or(-1), 0);
    EXPECT_EQ(m_bus.bootloader(1).value_or(-1), 1);
}

TEST_F(BusModelTest, ADeviceOnTheBusCannotBePluggedAgain)
{
    EXPECT_FALSE(m_bus.plug(0, Presence::Application));
    EXPECT_TRUE(m_bus.plug(1, Presence::Application));
    EXPECT_FALSE(m_bus.plug(1, Presence::Bootloader));
    EXPECT_TRUE(m_bus.unplug(1));
    EXPECT_FALSE(m_bus.unplug(1));
}

} // namespace
