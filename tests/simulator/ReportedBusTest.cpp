#include "simulator/report/ReportedBus.h"

#include "simulator/files/WholeFile.h"
#include "tests/simulator/ReportedReport.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using namespace ReportedReport;

QString complaintAbout(const QByteArray &json)
{
    QString error;
    EXPECT_FALSE(ReportedBus::parse(json, &error)) << json.left(200).toStdString();
    return error;
}

struct Wrong
{
    const char *name;
    QByteArray json;
    /// What the message must contain.
    const char *told;
};

void PrintTo(const Wrong &wrong, std::ostream *stream)
{
    *stream << wrong.name;
}

QJsonObject withDevice(const char *key, const QJsonValue &value)
{
    return report({with(usb(), key, value)});
}

QJsonObject withInterface(const char *key, const QJsonValue &value)
{
    return report({usb()}, {with(hid(QStringLiteral("/dev/hidraw0")), key, value)});
}

QJsonObject withBus(const char *key, const QJsonValue &value)
{
    QJsonObject whole = report({});
    return with(whole, "bus", with(whole.value(QLatin1String("bus")).toObject(), key, value));
}

QJsonArray many(int count, const QJsonObject &entry)
{
    QJsonArray entries;
    for (int i = 0; i < count; ++i)
        entries.append(entry);
    return entries;
}

class WrongReportTest : public testing::TestWithParam<Wrong>
{
};

TEST_P(WrongReportTest, IsRefusedWithAReason)
{
    const QString error = complaintAbout(GetParam().json);
    EXPECT_TRUE(error.contains(QLatin1String(GetParam().told))) << error.toStdString();
}

std::vector<Wrong> wrongReports()
{
    const QJsonObject right = report({usb()});
    return {
        {"Nothing", "", "damaged or cut"},
        {"NoJson", "Dear support, …", "damaged or cut"},
        {"Binary", QByteArray(1000, '\0'), "damaged or cut"},
        {"AList", "[]", "no report"},
        {"AnotherObject", "{\"devices\":[]}", "no report"},
        {"DeeplyNested", QByteArray(100000, '['), "damaged or cut"},
        {"ALaterFormat", text(with(right, "formatVersion", 2)), "newer"},
        {"NoVersion", text(with(right, "formatVersion", QJsonValue())), "version"},
        {"ANegativeVersion", text(with(right, "formatVersion", -1)), "version"},
        {"NoBus", text(with(right, "bus", QJsonValue())), "\"bus\""},
        {"NoUsbList", text(withBus("usb", QJsonObject())), "must be a list"},
        {"DevicesThatAreNone", text(withBus("usb", QJsonArray{1, QStringLiteral("x")})), "must hold objects"},
        {"AnUnknownMember", text(withBus("firewire", QJsonArray())), "unknown key"},
        {"AnUnknownMemberOfADevice", text(withDevice("script", 1)), "unknown key"},
        {"AnUnknownMemberOfAnInterface", text(withInterface("script", 1)), "unknown key"},
        {"IdsThatAreTooLong", text(withDevice("vendorId", QStringLiteral("0f104"))), "hexadecimal"},
        {"IdsThatAreNumbers", text(withDevice("vendorId", 61700)), "hexadecimal"},
        {"IdsThatAreWords", text(withDevice("productId", QStringLiteral("zzzz"))), "hexadecimal"},
        {"AnIdThatIsMissing", text(withDevice("productId", QJsonValue())), "hexadecimal"},
        {"AClassOfThreeHundred", text(withDevice("class", 300)), "from 0 to 255"},
        {"APositionThatIsAFolder", text(withDevice("position", QStringLiteral("../../etc"))), "position"},
        {"APositionWithALineFeed", text(withDevice("position", QStringLiteral("1-2\nN: x"))), "position"},
        {"AModelThatIsAPath", text(withDevice("model", QStringLiteral("../x"))), "no name of a model"},
        {"AShortDescriptor", text(withDevice("descriptor", QStringLiteral("1201"))), "must have 18 bytes"},
        {"ALongDescriptor", text(withDevice("descriptor", QString(38, QLatin1Char('0')))), "at most 18"},
        {"ADescriptorOfLetters", text(withDevice("descriptor", QStringLiteral("xyz"))), "hexadecimal"},
        {"AConfigurationThatIsShorterThanItSays",
         text(withDevice("configurations", QJsonArray{QStringLiteral("0902ff00000100803200")})),
         "not as long"},
        {"AConfigurationOfNothing", text(withDevice("configurations", QJsonArray{QString()})), "not as long"},
        {"TooManyConfigurations", text(withDevice("configurations", many(9, {}))), "at most 8"},
        {"InterfacesThatAreNoList", text(withDevice("interfaces", 1)), "must be a list"},
        {"TwoDevicesAtOnePlace", text(report({usb(), usb()})), "two devices are connected"},
        {"TooManyDevices", text(report(many(200, otherUsb()))), "more than 126"},
        {"TooManyInterfaces", text(report({usb()}, many(201, hid(QStringLiteral("/dev/hidraw0"))))),
         "more than 200"},
        {"APathOfThousands", text(withInterface("path", QString(2000, QLatin1Char('x')))), "longer than any"},
        {"APathThatIsANumber", text(withInterface("path", 1)), "must be a text"},
        {"AnInterfaceNumberOfThousands", text(withInterface("interface", 1000)), "from -1 to 255"},
        {"OpensThatIsAWord", text(withInterface("opens", QStringLiteral("yes"))), "true or false"},
        {"AReportDescriptorOfFiveThousandBytes",
         text(withInterface("reportDescriptor", QString(10000, QLatin1Char('0')))), "at most 4096"},
        {"OneNodeOfTwoDevices",
         text(report({usb("1-2"), usb("1-3")}, {hid(QStringLiteral("/dev/hidraw0"), "", "1-2"),
                                                hid(QStringLiteral("/dev/hidraw0"), "", "1-3")})),
         "two interfaces"},
        {"AControlListOfMegabytes",
         text(with(right, "files",
                   QJsonObject{{QStringLiteral("controlList"),
                                QJsonObject{{QStringLiteral("text"), QString(2000000, QLatin1Char(' '))}}}})),
         "longer than any control list"},
        {"ALanguageThatIsANumber", text(with(right, "locale", QJsonObject{{QStringLiteral("language"), 1}})),
         "must be a text"},
    };
}

INSTANTIATE_TEST_SUITE_P(Each, WrongReportTest, testing::ValuesIn(wrongReports()),
                         [](const auto &wrong) { return wrong.param.name; });

TEST(ReportedBusTest, AReportThatIsCutAnywhereIsRefused)
{
    const QByteArray whole = text(report({usb(), otherUsb()}, {hid(QStringLiteral("/dev/hidraw0"))}));
    ASSERT_TRUE(ReportedBus::parse(whole, nullptr));
    // The line feed after the last brace may be missing.
    for (int length = 0; length < whole.size() - 1; ++length)
        ASSERT_TRUE(complaintAbout(whole.left(length)).contains(QLatin1String("damaged or cut"))) << length;
}

TEST(ReportedBusTest, AReportOfAHundredMegabytesIsRefusedByItsSize)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("report.json"));
    QByteArray contents = text(report({usb()}));
    ASSERT_TRUE(WholeFile::write(path, contents));
    EXPECT_TRUE(ReportedBus::read(path, nullptr));

    // Blanks are no error of JSON's: only the size is wrong.
    contents.append(QByteArray(100 * 1024 * 1024, ' '));
    ASSERT_TRUE(WholeFile::write(path, contents));
    QString error;
    EXPECT_FALSE(ReportedBus::read(path, &error));
    EXPECT_TRUE(error.contains(path) && error.contains(QLatin1String("more than 32 MiB")))
        << error.toStdString();
}

TEST(ReportedBusTest, WhatIsNoFileIsRefused)
{
    const QTemporaryDir folder;
    for (const QString &path : {folder.path(), folder.filePath(QStringLiteral("none")), QString()}) {
        QString error;
        EXPECT_FALSE(ReportedBus::read(path, &error));
        EXPECT_TRUE(error.contains(QLatin1String("no such file"))) << error.toStdString();
    }
}

TEST(ReportedBusTest, ControlListLanguageAndModelAreThere)
{
    const auto reported = ReportedBus::parse(text(report({otherUsb(), usb()})), nullptr);
    ASSERT_TRUE(reported);
    EXPECT_EQ(reported->controlList, QByteArray("{\"devices\":[]}"));
    EXPECT_TRUE(reported->isChinese);
    EXPECT_EQ(reported->model, QStringLiteral("DevMah"));

    QJsonObject bare = report({});
    bare.remove(QStringLiteral("locale"));
    bare.remove(QStringLiteral("files"));
    const auto without = ReportedBus::parse(text(bare), nullptr);
    ASSERT_TRUE(without);
    EXPECT_FALSE(without->controlList);
    EXPECT_FALSE(without->isChinese);
    EXPECT_EQ(without->model, QString());
}

} // namespace
