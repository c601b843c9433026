#include "simulator/report/ReportedBus.h"
#include "simulator/report/ReportedHidPath.h"
#include "tests/simulator/ReportedReport.h"

#include <gtest/gtest.h>

namespace {

using namespace ReportedReport;

BusDescription busOf(const QJsonArray &usbDevices, const QJsonArray &hidInterfaces = {})
{
    QString error;
    const auto reported = ReportedBus::parse(text(report(usbDevices, hidInterfaces)), &error);
    EXPECT_EQ(error, QString());
    return reported ? reported->bus : BusDescription();
}

QStringList portsOf(const BusDescription &bus)
{
    QStringList ports;
    for (const DeviceDescription &device : bus.devices)
        ports.append(device.ports);
    return ports;
}

TEST(ReportedDevicesTest, ADetailedDeviceKeepsWhatItSaysOfItself)
{
    const BusDescription bus = busOf({usb("3-2.1")});
    ASSERT_EQ(bus.devices.size(), 1);
    const DeviceDescription &device = bus.devices.first();
    EXPECT_EQ(device.key, QStringLiteral("DevMah"));
    EXPECT_EQ(device.ports, QStringLiteral("3-2.1"));
    EXPECT_EQ(device.application.vendorId, 0xF104);
    EXPECT_EQ(device.application.productId, 0xA009);
    EXPECT_EQ(device.descriptors.toHex(),
              QByteArray("120100020000004004f109a0000101020301090209000001008032"));
    EXPECT_FALSE(bus.rootHub);
}

TEST(ReportedDevicesTest, ConfigurationsThatWereNotReadAreReplacedByEmptyOnes)
{
    QJsonObject device = with(usb(), "configurations", QJsonArray());
    device = with(device, "descriptor", QStringLiteral("120100020000004004f109a0000101020302"));
    EXPECT_EQ(busOf({device}).devices.first().descriptors.toHex(),
              QByteArray("120100020000004004f109a0000101020302") + "090209000001008032" +
                  "090209000002008032");
}

TEST(ReportedDevicesTest, OrderIsThatOfTheReportAndPortsAreGivenOnce)
{
    const BusDescription bus = busOf({otherUsb(), usb("1-255"), otherUsb(), usb("")});
    EXPECT_EQ(portsOf(bus), (QStringList{QStringLiteral("1-254"), QStringLiteral("1-255"),
                                         QStringLiteral("1-253"), QStringLiteral("1-252")}));
    EXPECT_EQ(bus.devices.at(2).key, QStringLiteral("other-2"));
    EXPECT_EQ(bus.devices.at(3).key, QStringLiteral("DevMah-2"));
}

TEST(ReportedDevicesTest, TheLastRootHubBecomesThatOfTheSimulatedBus)
{
    const BusDescription bus = busOf({otherUsb("1d6b", 9), usb(), otherUsb("1d6b", 9)});
    EXPECT_TRUE(bus.rootHub);
    ASSERT_EQ(bus.devices.size(), 2);
    EXPECT_EQ(bus.devices.first().application.vendorId, 0x1D6B);
}

TEST(ReportedDevicesTest, HubsStandWhereDevicesNeedThem)
{
    EXPECT_EQ(portsOf(busOf({usb("1-2.3.4"), otherUsb("05e3", 9), otherUsb("05e3", 0), otherUsb("05e3", 9)})),
              (QStringList{QStringLiteral("1-2.3.4"), QStringLiteral("1-2"), QStringLiteral("1-255"),
                           QStringLiteral("1-2.3")}));
}

TEST(ReportedDevicesTest, ABootloaderStartsAsOneAndStays)
{
    QJsonObject device = with(usb(), "bootloader", true);
    device = with(with(device, "vendorId", QStringLiteral("33c3")), "productId", QStringLiteral("8899"));
    const DeviceDescription described = busOf({with(device, "model", QString())}).devices.first();
    EXPECT_EQ(described.start, DeviceDescription::Start::Bootloader);
    EXPECT_EQ(described.onReset.action, ResetAnswer::Action::Stay);
    EXPECT_EQ(described.key, QStringLiteral("bootloader"));
}

TEST(ReportedDevicesTest, AMicrocontrollerCanBeProgrammed)
{
    EXPECT_TRUE(busOf({with(usb(), "iap", true)}).devices.first().programmable);
    EXPECT_FALSE(busOf({usb()}).devices.first().programmable);
}

TEST(ReportedDevicesTest, OnlyAMarkedInterfaceTakesTheUpdateReport)
{
    const auto accepting = [](const QJsonObject &device, const QJsonArray &interfaces) {
        QString accepted;
        const BusDescription bus = busOf({device}, interfaces);
        for (const HidNodeDescription &node : bus.devices.first().nodes)
            accepted += node.acceptsReport ? QLatin1Char('1') : QLatin1Char('0');
        return accepted;
    };
    const QJsonArray marked{hid(QStringLiteral("/dev/hidraw0"), "MI_01&Col01"),
                            hid(QStringLiteral("/dev/hidraw1"), "MI_00&Col01")};
    const QJsonArray unmarked{hid(QStringLiteral("/dev/hidraw0"), "Col01"),
                              hid(QStringLiteral("/dev/hidraw1"), "Col01")};
    EXPECT_EQ(accepting(usb(), marked), QStringLiteral("01"));
    EXPECT_EQ(accepting(usb(), unmarked), QStringLiteral("00"));
    EXPECT_EQ(accepting(with(usb(), "marker", QString()), unmarked), QStringLiteral("10"));
}

TEST(ReportedDevicesTest, CollectionsOfOneNodeAreOneNode)
{
    const BusDescription bus = busOf({usb()}, {hid(QStringLiteral("/dev/hidraw4"), "MI_00&Col01"),
                                               hid(QStringLiteral("/dev/hidraw4"), "MI_00&Col02"),
                                               hid(QJsonValue(), "MI_01&Col01"), hid(QJsonValue(), "x")});
    const QVector<HidNodeDescription> &nodes = bus.devices.first().nodes;
    ASSERT_EQ(nodes.size(), 3);
    EXPECT_EQ(nodes.at(0).node, QStringLiteral("hidraw4"));
    EXPECT_EQ(nodes.at(0).collections, 2);
    ASSERT_EQ(nodes.at(0).windowsPaths.size(), 2);
    EXPECT_TRUE(nodes.at(0).windowsPaths.at(1).contains(QLatin1String("&mi_00&col02#")));
    EXPECT_TRUE(nodes.at(1).pathless);
    EXPECT_TRUE(nodes.at(2).pathless);
}

TEST(ReportedDevicesTest, APathOfWindowsBecomesANodeWithTheSameWordsAndNoOthers)
{
    const QString path = QStringLiteral("\\\\?\\hid#vid_f104&pid_a009&MI_00&col04#7&1&0&0003#{guid}");
    const QString plain = QStringLiteral("\\\\?\\hid#vid_f104&pid_a009#7&1&0&0000#{guid}");
    const BusDescription bus = busOf({usb()}, {hid(path), hid(plain)});
    const QVector<HidNodeDescription> &nodes = bus.devices.first().nodes;
    ASSERT_EQ(nodes.size(), 2);
    EXPECT_EQ(nodes.at(0).node, QStringLiteral("hidraw_mi_00_col04_1"));
    EXPECT_EQ(nodes.at(0).number, 0);
    EXPECT_EQ(nodes.at(0).windowsPaths, QStringList(path));
    // The number alone would make the word, which the user's program did not see.
    EXPECT_EQ(nodes.at(1).node, QStringLiteral("hidraw_2"));
    EXPECT_EQ(nodes.at(1).number, -1);
    EXPECT_EQ(nodes.at(1).windowsPaths, QStringList(plain));
}

TEST(ReportedDevicesTest, InterfacesGoToTheirDevicesByPositionOrByTurns)
{
    const auto nodesOf = [](const QJsonArray &interfaces) {
        QStringList lists;
        for (const DeviceDescription &device : busOf({usb("1-2"), usb("1-3")}, interfaces).devices)
            lists.append(QString::number(device.nodes.size()));
        return lists.join(QLatin1Char(' '));
    };
    EXPECT_EQ(nodesOf({hid(QStringLiteral("/dev/hidraw0"), "", "1-3"),
                       hid(QStringLiteral("/dev/hidraw1"), "", "1-3"),
                       hid(QStringLiteral("/dev/hidraw2"), "", "1-2")}),
              QStringLiteral("1 2"));
    EXPECT_EQ(nodesOf({hid(QStringLiteral("x&mi_00#1")), hid(QStringLiteral("x&mi_01#1")),
                       hid(QStringLiteral("x&mi_00#2")), hid(QStringLiteral("x&mi_01#2"))}),
              QStringLiteral("2 2"));
    // An interface without a USB device is one that the program never looks at.
    EXPECT_EQ(nodesOf({with(hid(QStringLiteral("x")), "productId", QStringLiteral("a00a"))}),
              QStringLiteral("0 0"));
}

TEST(ReportedHidPathTest, OnlyPlainNamesInDevBecomeFiles)
{
    EXPECT_EQ(ReportedHidPath::nodeName(QStringLiteral("/dev/hidraw0")), QStringLiteral("hidraw0"));
    EXPECT_EQ(ReportedHidPath::nodeName(QStringLiteral("/dev/hidraw_MI_00&a")),
              QStringLiteral("hidraw_MI_00&a"));
    for (const char *path :
         {"", "/dev/", "/dev/..", "/dev/a/b", "/etc/passwd", "/dev/a\nb", "/dev/.x", "/dev/-x"})
        EXPECT_EQ(ReportedHidPath::nodeName(QString::fromLatin1(path)), QString()) << path;
}

} // namespace
