#include "report/BusReport.h"

#include "devices/Bootloader.h"
#include "devices/models/ModelTable.h"
#include "report/UsbInterfaces.h"

#include <QJsonArray>

#include <gtest/gtest.h>

namespace {

UsbRecord usbOf(const char *model)
{
    const ModelTable table;
    UsbRecord record;
    for (const ModelRow &row : table.rows()) {
        if (row.name == QLatin1String(model)) {
            record.vendorId = static_cast<quint16>(row.vendorId);
            record.productId = static_cast<quint16>(row.productId);
        }
    }
    record.descriptor = QByteArray(18, '\x12');
    record.position = QStringLiteral("1-2");
    return record;
}

UsbRecord bootloader()
{
    UsbRecord record = usbOf("DevMaa");
    record.vendorId = Bootloader::vendorId;
    record.productId = Bootloader::productId;
    return record;
}

HidRecord hidOf(const UsbRecord &device, const char *path, const char *markers = "", bool opens = true)
{
    HidRecord record;
    record.seen.vendorId = device.vendorId;
    record.seen.productId = device.productId;
    record.seen.path = path;
    record.seen.markers = QLatin1String(markers);
    record.opens = opens;
    return record;
}

const QByteArray allOn = R"({"devices":[{"id":"DevMaa","is_on":true},{"id":"DevMah","is_on":true},
                                        {"id":"DevMdq","is_on":true}]})";

QJsonObject decision(const BusInventory &inventory, const std::optional<QByteArray> &list = allOn)
{
    return BusReport::of(inventory, list).value(QLatin1String("decision")).toObject();
}

QJsonObject decided(const char *state, const char *model, const QJsonValue &interface = QJsonValue())
{
    return {{QStringLiteral("state"), QLatin1String(state)},
            {QStringLiteral("model"), QLatin1String(model)},
            {QStringLiteral("interface"), interface}};
}

TEST(BusReportTest, TheDecisionIsTheSameAsTheMonitors)
{
    EXPECT_EQ(decision({}), decided("nothing", ""));
    EXPECT_EQ(decision({1, {usbOf("DevMaa")}, {}, 0}), decided("device", "DevMaa"));
    EXPECT_EQ(decision({1, {usbOf("DevMdq")}, {}, 0}), decided("iap-device", "DevMdq"));
    EXPECT_EQ(decision({1, {usbOf("DevMac")}, {}, 0}), decided("nothing", "DevMac"));
    EXPECT_EQ(decision({1, {usbOf("DevMaa")}, {}, 0}, std::nullopt), decided("nothing", "DevMaa"));
    EXPECT_EQ(decision({2, {usbOf("DevMaa"), bootloader()}, {}, 0}), decided("bootloader", ""));
    EXPECT_EQ(decision({2, {bootloader(), bootloader()}, {}, 0}), decided("several-bootloaders", ""));
}

TEST(BusReportTest, ThePickedInterfaceIsTheFirstMarkedOneThatOpens)
{
    const UsbRecord duo = usbOf("DevMah");
    const UsbRecord other = usbOf("DevMaa");
    const auto pick = [&](const QVector<HidRecord> &interfaces) {
        return decision({1, {duo}, interfaces, 0}).value(QLatin1String("interface"));
    };
    EXPECT_EQ(pick({}), QJsonValue(-1));
    EXPECT_EQ(pick({hidOf(duo, "/dev/hidraw0")}), QJsonValue(-1));
    EXPECT_EQ(pick({hidOf(other, "mi_00"), hidOf(duo, "x&mi_01"), hidOf(duo, "x&mi_00")}), QJsonValue(2));
    EXPECT_EQ(pick({hidOf(duo, "a", "MI_00&Col01", false), hidOf(duo, "b", "MI_00&Col02")}), QJsonValue(1));
}

TEST(BusReportTest, ForOtherDevicesOnlyIdsAndClassAreReported)
{
    UsbRecord other;
    other.vendorId = 0x046D;
    other.productId = 0xC31C;
    other.deviceClass = 3;
    const QJsonObject bus = BusReport::of({1, {other}, {}, 4}, allOn);
    EXPECT_EQ(bus.value(QLatin1String("usb")).toArray(),
              (QJsonArray{QJsonObject{{QStringLiteral("vendorId"), QStringLiteral("046d")},
                                      {QStringLiteral("productId"), QStringLiteral("c31c")},
                                      {QStringLiteral("class"), 3}}}));
    EXPECT_EQ(bus.value(QLatin1String("otherHid")), QJsonValue(4));
}

TEST(BusReportTest, TheVendorsOfTheTableAndOfTheBootloaderAreWanted)
{
    const BusInventory::IsWanted isWanted = BusReport::wantedVendors();
    EXPECT_TRUE(isWanted(usbOf("DevMaa").vendorId));
    EXPECT_TRUE(isWanted(Bootloader::vendorId));
    EXPECT_FALSE(isWanted(0x046D));
    EXPECT_FALSE(isWanted(0));
}

TEST(UsbInterfacesTest, InterfacesAndEndpointsAreRead)
{
    const QByteArray configuration =
        QByteArray::fromHex("09022900020100803209040000020300000009211101000122150007058103400001"
                            "0705010340000109040101 00ff010200");
    EXPECT_EQ(UsbInterfaces::of(configuration),
              (QJsonArray{QJsonObject{{QStringLiteral("number"), 0},
                                      {QStringLiteral("alternate"), 0},
                                      {QStringLiteral("class"), 3},
                                      {QStringLiteral("subClass"), 0},
                                      {QStringLiteral("protocol"), 0},
                                      {QStringLiteral("endpoints"),
                                       QJsonArray{QStringLiteral("81"), QStringLiteral("01")}}},
                          QJsonObject{{QStringLiteral("number"), 1},
                                      {QStringLiteral("alternate"), 1},
                                      {QStringLiteral("class"), 255},
                                      {QStringLiteral("subClass"), 1},
                                      {QStringLiteral("protocol"), 2},
                                      {QStringLiteral("endpoints"), QJsonArray()}}}));
}

TEST(UsbInterfacesTest, InvalidBytesAreIgnored)
{
    for (const char *bytes : {"", "09", "0904", "0004", "01040000", "ff0400000000000000", "0705810340000100"})
        EXPECT_EQ(UsbInterfaces::of(QByteArray::fromHex(bytes)), QJsonArray()) << bytes;
}

} // namespace
