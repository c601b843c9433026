#include "checks/DeviceFindings.h"

#include <gtest/gtest.h>

namespace {

using Verdict = Finding::Verdict;
using State = DeviceInfo::State;

const QString listPath = QStringLiteral("/there/ControlDevList.json");

DeviceInfo deviceOf(const char *model, State state = State::Ready)
{
    DeviceInfo device;
    device.model = QLatin1String(model);
    device.state = state;
    return device;
}

TEST(DeviceFindingsTest, AControlListMustBeReadableAndSwitchTheModelOn)
{
    const char *const both = R"({"devices":[{"id":"DevMaa","is_on":true},{"id":"DevMab","is_on":false}]})";
    const struct
    {
        const char *name;
        std::optional<QByteArray> contents;
        const char *model;
        Verdict verdict;
        const char *inText;
    } cases[] = {
        {"unreadable", std::nullopt, "", Verdict::Problem, "cannot be read"},
        {"no JSON", QByteArray("{"), "", Verdict::Problem, "Invalid JSON format!"},
        {"no devices", QByteArray("{}"), "", Verdict::Problem, "No devices found in the JSON data.!"},
        {"nothing on", QByteArray(R"({"devices":[]})"), "", Verdict::Problem, "no model"},
        {"unknown model on", QByteArray(R"({"devices":[{"id":"X","is_on":true}]})"), "", Verdict::Problem,
         "no model"},
        {"one on", QByteArray(both), "", Verdict::Ok, " 1 models"},
        {"this one on", QByteArray(both), "DevMaa", Verdict::Ok, " 1 models"},
        {"this one off", QByteArray(both), "DevMab", Verdict::Problem, "DevMab"},
        {"this one absent", QByteArray(both), "DevMac", Verdict::Problem, "DevMac"},
    };
    for (const auto &c : cases) {
        const Finding found = DeviceFindings::controlList(listPath, c.contents, QLatin1String(c.model));
        EXPECT_EQ(found.verdict, c.verdict) << c.name;
        EXPECT_TRUE(found.text.contains(QLatin1String(c.inText))) << c.name << ": " << qPrintable(found.text);
        EXPECT_TRUE(found.text.contains(listPath)) << c.name;
        EXPECT_EQ(found.remedy.isEmpty(), c.verdict == Verdict::Ok) << c.name;
        EXPECT_EQ(found.what, QStringLiteral("control-list"));
    }
}

TEST(DeviceFindingsTest, AMissingToolThatIsNotNeededIsOnlyAWarning)
{
    const struct
    {
        bool exists;
        bool executable;
        bool needed;
        Verdict verdict;
    } cases[] = {
        {true, true, true, Verdict::Ok},        {true, true, false, Verdict::Ok},
        {true, false, true, Verdict::Problem},  {true, false, false, Verdict::Warning},
        {false, false, true, Verdict::Problem}, {false, false, false, Verdict::Warning},
    };
    for (const auto &c : cases) {
        const Finding found = DeviceFindings::tool(
            {QStringLiteral("usb-flasher"), QStringLiteral("/t/upgcmd.exe"), c.exists, c.executable},
            c.needed);
        EXPECT_EQ(found.verdict, c.verdict) << c.exists << c.executable << c.needed;
        EXPECT_TRUE(found.text.contains(QStringLiteral("/t/upgcmd.exe")));
    }
}

TEST(DeviceFindingsTest, TheNeededToolDependsOnModelAndWriteType)
{
    const QStringList usb{QStringLiteral("USB")};
    const QStringList hid{QStringLiteral("HID")};
    EXPECT_EQ(DeviceFindings::neededTool(QString(), usb), QStringLiteral("usb-flasher"));
    EXPECT_EQ(DeviceFindings::neededTool(QStringLiteral("DevMaa"), usb + hid), QStringLiteral("usb-flasher"));
    EXPECT_EQ(DeviceFindings::neededTool(QStringLiteral("DevMaa"), hid), QStringLiteral("hid-flasher"));
    EXPECT_EQ(DeviceFindings::neededTool(QStringLiteral("DevMdq"), usb), QStringLiteral("iap-programmer"));
}

TEST(DeviceFindingsTest, TheModelIsTheRequestedOneOrTheOnlyConnectedOne)
{
    const QVector<DeviceInfo> two{deviceOf("DevMaa"), deviceOf("DevMab")};
    EXPECT_EQ(DeviceFindings::modelToCheck(QStringLiteral("DevMac"), two), QStringLiteral("DevMac"));
    EXPECT_EQ(DeviceFindings::modelToCheck(QString(), two), QString());
    EXPECT_EQ(DeviceFindings::modelToCheck(QString(), {deviceOf("DevMab"), deviceOf("DevMab")}),
              QStringLiteral("DevMab"));
    EXPECT_EQ(DeviceFindings::modelToCheck(QString(), {}), QString());
    EXPECT_EQ(DeviceFindings::modelToCheck(QString(), {deviceOf("", State::InBootloader)}), QString());
}

TEST(DeviceFindingsTest, DevicesAreJudgedForTheRequestedModel)
{
    const DeviceInfo waiting = deviceOf("", State::InBootloader);
    const struct
    {
        const char *name;
        QVector<DeviceInfo> devices;
        const char *asked;
        Verdict verdict;
    } cases[] = {
        {"none", {}, "", Verdict::Warning},
        {"one", {deviceOf("DevMaa")}, "", Verdict::Ok},
        {"the right one", {deviceOf("DevMaa")}, "DevMaa", Verdict::Ok},
        {"another one", {deviceOf("DevMaa")}, "DevMab", Verdict::Warning},
        {"no such model", {deviceOf("DevMaa")}, "DevXyz", Verdict::Problem},
        {"capitals count", {deviceOf("DevMaa")}, "devmaa", Verdict::Problem},
        {"bootloader", {waiting}, "", Verdict::Warning},
        {"bootloader with a model", {waiting}, "DevMaa", Verdict::Ok},
        {"two bootloaders", {waiting, waiting}, "DevMaa", Verdict::Problem},
    };
    for (const auto &c : cases)
        EXPECT_EQ(DeviceFindings::devices(c.devices, QLatin1String(c.asked)).verdict, c.verdict) << c.name;
}

TEST(DeviceFindingsTest, ARefusedDeviceFileIsNamedWithTheRulesThatHelp)
{
    EXPECT_EQ(DeviceFindings::deviceAccess(QString()).verdict, Verdict::Ok);
    EXPECT_TRUE(DeviceFindings::deviceAccess(std::nullopt).text.contains(QStringLiteral("Only an update")));
    const Finding refused = DeviceFindings::deviceAccess(QStringLiteral("/dev/bus/usb/001/002"));
    EXPECT_EQ(refused.verdict, Verdict::Problem);
    EXPECT_TRUE(refused.text.contains(QStringLiteral("/dev/bus/usb/001/002")));
    EXPECT_TRUE(refused.remedy.contains(QStringLiteral("60-quillmarsh.rules")));
}

} // namespace
