#include "devices/ControlledDeviceList.h"

#include "devices/models/ModelTable.h"
#include "simulator/files/WholeFile.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/common/RecordingReporter.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using namespace ControlledDeviceList;

const QByteArray example = R"({
  "devices": [
    { "id": "DevMaa", "is_on": true },
    { "id": "DevMbr", "is_on": false }
  ],
  "WriteType": [
    { "id": "USB", "is_on": true },
    { "id": "HID", "is_on": false }
  ]
})";

class ControlledDeviceListTest : public testing::Test
{
protected:
    bool parse(const QByteArray &json, const char *dev)
    {
        return parseDevices(json, QString::fromUtf8(dev), m_reporter);
    }
    QString listPath() const { return m_folder.filePath(QStringLiteral("ControlDevList.json")); }
    void write(const QByteArray &contents) const { ASSERT_TRUE(WholeFile::write(listPath(), contents)); }
    void expectUnreadable()
    {
        EXPECT_FALSE(findDevForJson(listPath(), QStringLiteral("DevMaa"), m_reporter));
        EXPECT_EQ(m_reporter.logLines(), QStringList{QStringLiteral("Failed to open file: dev json.!")});
        EXPECT_EQ(m_debug.warnings(), QStringList{QStringLiteral("Failed to open file")});
    }

    QTemporaryDir m_folder;
    RecordingReporter m_reporter;
    RecordedDebugStream m_debug;
};

TEST_F(ControlledDeviceListTest, IsBelowTheApplicationFolder)
{
    EXPECT_EQ(path(QStringLiteral("/opt/tool")), QStringLiteral("/opt/tool/qmake/ControlDevList.json"));
}

TEST_F(ControlledDeviceListTest, AListedModelThatIsOnIsOnAndLogged)
{
    EXPECT_TRUE(parse(example, "DevMaa"));
    EXPECT_EQ(m_reporter.logLines(), QStringList{QStringLiteral("Find dev for json dev: DevMaa")});
    EXPECT_TRUE(m_debug.lines().isEmpty());
}

TEST_F(ControlledDeviceListTest, AListedModelThatIsOffIsOffButStillLogged)
{
    EXPECT_FALSE(parse(example, "DevMbr"));
    EXPECT_EQ(m_reporter.logLines(), QStringList{QStringLiteral("Find dev for json dev: DevMbr")});
    EXPECT_EQ(m_debug.lines(), QStringList{QStringLiteral("Device ID:DevMaa, Status:true")});
}

TEST_F(ControlledDeviceListTest, AModelThatIsNotListedIsOffAndOnlyWritesDebugLines)
{
    EXPECT_FALSE(parse(example, "DevMcc"));
    EXPECT_TRUE(m_reporter.logLines().isEmpty());
    EXPECT_EQ(m_debug.lines(), (QStringList{QStringLiteral("Device ID:DevMaa, Status:true"),
                                            QStringLiteral("Device ID:DevMbr, Status:false")}));
}

TEST_F(ControlledDeviceListTest, AnIdInOtherLetterCaseDoesNotMatch)
{
    EXPECT_FALSE(parse(example, "devmaa"));
    EXPECT_TRUE(m_reporter.logLines().isEmpty());
}

TEST_F(ControlledDeviceListTest, OnlyTheFirstEntryOfAModelCounts)
{
    EXPECT_FALSE(parse(R"({"devices":[{"id":"A","is_on":false},{"id":"A","is_on":true}]})", "A"));
    EXPECT_TRUE(parse(R"({"devices":[{"id":"A","is_on":true},{"id":"A","is_on":false}]})", "A"));
}

TEST_F(ControlledDeviceListTest, ElementsThatAreNoObjectsAreSkipped)
{
    EXPECT_TRUE(parse(R"({"devices":[1,"A",null,["A"],{"id":"A","is_on":true}]})", "A"));
    EXPECT_TRUE(m_debug.lines().isEmpty()) << "they cause no lines either";
}

TEST_F(ControlledDeviceListTest, AnEntryWithoutIsOnIsOff)
{
    EXPECT_FALSE(parse(R"({"devices":[{"id":"A"}]})", "A"));
    EXPECT_FALSE(isDeviceOn(QJsonObject()));
}

TEST_F(ControlledDeviceListTest, IsOnOfAnotherTypeIsOff)
{
    EXPECT_FALSE(parse(R"({"devices":[{"id":"A","is_on":"true"}]})", "A"));
    EXPECT_FALSE(parse(R"({"devices":[{"id":"A","is_on":1}]})", "A"));
    EXPECT_TRUE(parse(R"({"devices":[{"id":"A","is_on":true}]})", "A"));
}

TEST_F(ControlledDeviceListTest, AnIdThatIsNoStringMatchesNoModel)
{
    EXPECT_FALSE(parse(R"({"devices":[{"id":5,"is_on":true}]})", "5"));
    EXPECT_TRUE(m_reporter.logLines().isEmpty());
}

TEST_F(ControlledDeviceListTest, DevicesAsAnObjectIsReportedAsNoDevicesFound)
{
    EXPECT_FALSE(parse(R"({"devices":{"id":"A","is_on":true}})", "A"));
    EXPECT_EQ(m_reporter.logLines(), QStringList{QStringLiteral("No devices found in the JSON data.!")});
    EXPECT_EQ(m_debug.warnings(), QStringList{QStringLiteral("No devices found in the JSON data.")});
}

TEST_F(ControlledDeviceListTest, AMissingDevicesKeyIsReportedAsNoDevicesFound)
{
    EXPECT_FALSE(parse("{}", "A"));
    EXPECT_EQ(m_reporter.logLines(), QStringList{QStringLiteral("No devices found in the JSON data.!")});
}

TEST_F(ControlledDeviceListTest, ATopLevelThatIsNoObjectIsInvalid)
{
    const QByteArray inputs[] = {"", "[]", "null", "{", "not json", "\xff\xfe\x7b\x00", QByteArray(1, '\0')};
    for (const QByteArray &input : inputs)
        EXPECT_FALSE(parse(input, "A"));
    const int count = static_cast<int>(std::size(inputs));
    EXPECT_EQ(m_reporter.logLines().count(QStringLiteral("Invalid JSON format!")), count);
    EXPECT_EQ(m_debug.warnings().count(QStringLiteral("Invalid JSON format")), count);
    EXPECT_EQ(m_reporter.logLines().size(), count);
}

TEST_F(ControlledDeviceListTest, AListWithAByteOrderMarkIsRead)
{
    EXPECT_TRUE(parse("\xEF\xBB\xBF" + example, "DevMaa"));
}

TEST_F(ControlledDeviceListTest, AMissingFileSwitchesEverythingOff)
{
    expectUnreadable();
}

TEST_F(ControlledDeviceListTest, AFolderOfThatNameCountsAsAFileThatCannotBeOpened)
{
    ASSERT_TRUE(QDir().mkdir(listPath()));
    expectUnreadable();
}

TEST_F(ControlledDeviceListTest, AFileLargerThanTheLimitCountsAsOneThatCannotBeOpened)
{
    write(example + QByteArray(static_cast<int>(maximumBytes) - example.size(), ' '));
    EXPECT_TRUE(findDevForJson(listPath(), QStringLiteral("DevMaa"), m_reporter)) << "just at the limit";
    write(example + QByteArray(static_cast<int>(maximumBytes) - example.size() + 1, ' '));
    EXPECT_FALSE(findDevForJson(listPath(), QStringLiteral("DevMaa"), m_reporter));
    EXPECT_EQ(m_reporter.logLines().last(), QStringLiteral("Failed to open file: dev json.!"));
}

TEST_F(ControlledDeviceListTest, AnEmptyFileIsInvalidRatherThanMissing)
{
    write(QByteArray());
    EXPECT_FALSE(findDevForJson(listPath(), QStringLiteral("DevMaa"), m_reporter));
    EXPECT_EQ(m_reporter.logLines(), QStringList{QStringLiteral("Invalid JSON format!")});
}

TEST_F(ControlledDeviceListTest, AChangeOfTheFileTakesEffectAtOnce)
{
    write(R"({"devices":[{"id":"A","is_on":true}]})");
    EXPECT_TRUE(findDevForJson(listPath(), QStringLiteral("A"), m_reporter));
    write(R"({"devices":[{"id":"A","is_on":false}]})");
    EXPECT_FALSE(findDevForJson(listPath(), QStringLiteral("A"), m_reporter));
}

TEST_F(ControlledDeviceListTest, WriteTypesAreReadFromTheFile)
{
    write(example);
    WriteType type;
    EXPECT_TRUE(readWriteType(listPath(), type));
    EXPECT_TRUE(type.usb);
    EXPECT_FALSE(type.hid);
    EXPECT_EQ(m_debug.lines(), QStringList{QStringLiteral("InitUseWirteType...")});
}

TEST_F(ControlledDeviceListTest, AMissingFileKeepsTheWriteTypesAndIsReportedOnTheDebugStreamOnly)
{
    WriteType type;
    EXPECT_FALSE(readWriteType(listPath(), type));
    EXPECT_FALSE(type.usb);
    EXPECT_FALSE(type.hid);
    EXPECT_EQ(m_debug.lines(),
              (QStringList{QStringLiteral("InitUseWirteType..."), QStringLiteral("Failed to open file"),
                           QStringLiteral("Failed to open file: dev json.!")}));
    EXPECT_EQ(m_debug.warnings(), QStringList{QStringLiteral("Failed to open file")});
    EXPECT_EQ(writeTypeItems(type), QStringList{QStringLiteral("USB")});
}

TEST_F(ControlledDeviceListTest, AnUnreadableWriteTypeIsNoFailureOnceTheFileIsRead)
{
    for (const char *contents : {"", "[]", "{}", R"({"WriteType":{"id":"USB","is_on":true}})"}) {
        write(contents);
        WriteType type;
        EXPECT_TRUE(readWriteType(listPath(), type)) << contents;
        EXPECT_FALSE(type.usb || type.hid) << contents;
    }
}

TEST_F(ControlledDeviceListTest, AnAbsentWriteTypeKeepsItsValueAndOtherIdsAreIgnored)
{
    WriteType type{true, true};
    parseWriteType(R"({"WriteType":[7,{"id":"HID","is_on":false},{"id":"usb","is_on":false}]})", type);
    EXPECT_TRUE(type.usb);
    EXPECT_FALSE(type.hid);
}

TEST_F(ControlledDeviceListTest, TheLaterOfTwoWriteTypeEntriesWins)
{
    WriteType type;
    parseWriteType(R"({"WriteType":[{"id":"USB","is_on":false},{"id":"USB","is_on":true}]})", type);
    EXPECT_TRUE(type.usb);
    parseWriteType(R"({"WriteType":[{"id":"USB","is_on":true},{"id":"USB"}]})", type);
    EXPECT_FALSE(type.usb);
}

TEST_F(ControlledDeviceListTest, AWriteTypeWithOnlyHidOffersOnlyHid)
{
    WriteType type;
    parseWriteType(R"({"WriteType":[{"id":"HID","is_on":true}]})", type);
    EXPECT_EQ(writeTypeItems(type), QStringList{QStringLiteral("HID")});
}

TEST_F(ControlledDeviceListTest, TheSelectorOffersAtLeastUsb)
{
    const QString usb = QStringLiteral("USB");
    const QString hid = QStringLiteral("HID");
    EXPECT_EQ(writeTypeItems({true, false}), QStringList{usb});
    EXPECT_EQ(writeTypeItems({false, true}), QStringList{hid});
    EXPECT_EQ(writeTypeItems({true, true}), (QStringList{usb, hid}));
    EXPECT_EQ(writeTypeItems({false, false}), QStringList{usb});
}

TEST_F(ControlledDeviceListTest, TheShippedListSwitchesEveryModelAndBothWriteTypesOn)
{
    const QString shipped = QStringLiteral(QUILLMARSH_SHIPPED_DEVICE_LIST);
    const ModelTable table;
    for (const ModelRow &row : table.rows())
        EXPECT_TRUE(findDevForJson(shipped, row.name, m_reporter)) << row.name.data();
    WriteType type;
    EXPECT_TRUE(readWriteType(shipped, type));
    EXPECT_TRUE(type.usb && type.hid);
}

} // namespace
