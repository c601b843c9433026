#include "tests/endtoend/EndToEnd.h"

#include "harness/session/ModelOnBus.h"

#include <QDir>

namespace {

using namespace EndToEnd;

class PlainUpdateTest : public EndToEndTest
{
protected:
    QString imageFile() { return scenario().program.temporaryFolder() + imageName; }
    QString imagePath() { return scenario().program.toProgramPath(imageFile()); }

    const QString imageName = QStringLiteral("/QuillmarshV3TmpPath/tmp/dev.img");
};

TEST_F(PlainUpdateTest, ADeviceIsUpdatedOverUsbAndComesBackAsItself)
{
    UpdateScenario &s = scenario();
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_TRUE(s.program.standardError().contains(QStringLiteral("Start Update button was pressed!")));
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_TRUE(s.bus.waitForDevice(s.model(), QStringLiteral("application")));
    EXPECT_EQ(argumentsOf(s.program, usbFlasher),
              (QList<QStringList>{{QStringLiteral("image"), imagePath()},
                                  {QStringLiteral("shcmd"), QStringLiteral("reset")}}));
    EXPECT_TRUE(s.program.runs(hidFlasher).isEmpty());
    EXPECT_TRUE(s.probe.waitForWholeText(connection, QStringLiteral("Device Detected")));
    EXPECT_FALSE(QFile::exists(imageFile()));
}

TEST_F(PlainUpdateTest, ADeviceIsUpdatedOverHid)
{
    UpdateScenario &s = scenario();
    s.program.setControlList({s.model()}, {QStringLiteral("HID")});
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_EQ(argumentsOf(s.program, hidFlasher),
              (QList<QStringList>{{QStringLiteral("image"), imagePath()},
                                  {QStringLiteral("shcmd"), QStringLiteral("reset")}}));
    EXPECT_TRUE(s.program.runs(usbFlasher).isEmpty());
}

TEST_F(PlainUpdateTest, TheDeviceGetsOneReportOf513BytesOnASingleInterface)
{
    UpdateScenario &s = scenario();
    EXPECT_EQ(update(), upgradeSuccessful);
    const QJsonArray reports = s.bus.device(s.model()).value(QLatin1String("reports")).toArray();
    ASSERT_EQ(reports.size(), 1);
    QByteArray expected = QByteArray::fromHex("04435254"
                                              "0000"
                                              "4150504e4557");
    expected.append(513 - expected.size(), '\0');
    EXPECT_EQ(reports.first().toString().toLatin1(), expected.toHex());
    EXPECT_TRUE(logHas("write res:513CommandKind:1IsDuoDev:2"));
}

TEST_F(PlainUpdateTest, ADuoDeviceIsReachedThroughItsMarkedInterface)
{
    for (const char *model : {"DevMbu", "DevMbr"}) {
        m_scenario.reset();
        UpdateScenario &s = scenario(model);
        EXPECT_EQ(update(), upgradeSuccessful) << model;
        EXPECT_EQ(s.burned(), s.image());
        EXPECT_TRUE(logHas("write res:513CommandKind:1IsDuoDev:1")) << model;
        // It is in the working folder, like the other log.
        EXPECT_TRUE(s.program.interfaceLog().startsWith(QStringLiteral("Found device: VID: ")));
    }
}

TEST_F(PlainUpdateTest, AfterASuccessfulBurnTheResetRunsEvenWhenTheRestartBoxIsUnticked)
{
    UpdateScenario &s = scenario();
    ASSERT_TRUE(s.start()) << s.errorText().toStdString();
    ASSERT_TRUE(s.probe.check(QStringLiteral("restartBox"), false));
    ASSERT_TRUE(s.pressStart());
    ASSERT_TRUE(s.probe.waitForText(title, QStringLiteral("Upgrade Successful"), updateLimitMs));
    EXPECT_EQ(titleWhenIdle(), upgradeSuccessful);
    EXPECT_FALSE(s.probe.isChecked(QStringLiteral("restartBox")));
    EXPECT_EQ(s.bus.device(s.model()).value(QLatin1String("resets")).toInt(), 1);
}

TEST_F(PlainUpdateTest, TwoUpdatesInARowBothSucceed)
{
    UpdateScenario &s = scenario();
    EXPECT_EQ(update(), upgradeSuccessful);
    ASSERT_TRUE(waitUntilRestarted());
    ASSERT_TRUE(s.pressStart());
    ASSERT_TRUE(s.probe.waitForEnabled(startButton, false));
    EXPECT_EQ(titleWhenIdle(), upgradeSuccessful);
    EXPECT_EQ(s.bus.device(s.model()).value(QLatin1String("burns")).toInt(), 2);
    EXPECT_EQ(s.burned(), s.image());
}

TEST_F(PlainUpdateTest, TheLogContainsAllStepsInOrder)
{
    UpdateScenario &s = scenario();
    EXPECT_EQ(update(), upgradeSuccessful);
    const QStringList lines = s.program.updateLogLines();
    int last = -1;
    for (const char *text : {"create IAPUpDate Mode...",
                             "IAP Process exists",
                             "create IAPUpDate Mode done.",
                             "Find deviceName: DevMaa",
                             "Try To Get File Address...",
                             "try to download dev json...",
                             "Download finished successfully.",
                             "Json Download succeeded.",
                             "parse json Success:",
                             "try to clear tmp dir/tmp",
                             "try to download file...",
                             "is img file type.",
                             "Wait Servier Return File Size...",
                             "Begin Download now...",
                             "Now merge Files...",
                             "merge Files Success",
                             "Download Success",
                             "now check downloadfile md5..",
                             "File MD5 verified successfully.",
                             "try to bootloader...",
                             "hid_open...",
                             "open device done",
                             "start hid_write...",
                             "TryToBootloader Success!",
                             "Current writeType is: USB.",
                             "in usb write mode..",
                             "Burn Image Success",
                             "run usb reset.",
                             "try to RunCmdReset...",
                             "RunCmdReset Done."}) {
        const int at = lines.indexOf(QString::fromLatin1(text), last + 1);
        EXPECT_GT(at, last) << "missing or out of order: " << text;
        last = at;
    }
}

} // namespace
