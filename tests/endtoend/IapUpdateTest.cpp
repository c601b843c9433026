#include "tests/common/TextList.h"
#include "tests/endtoend/IapTest.h"

namespace {

using namespace EndToEnd;

/// Whole updates of a device with a microcontroller, from Start to the title at the end.
using IapUpdateTest = IapTest;

TEST_F(IapUpdateTest, AnIapModelIsProgrammedWithTheServersImageAndTheChipsFlasherDoesNotRun)
{
    UpdateScenario &s = iapScenario();
    startAndPressStart();
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_EQ(s.bus.device(s.model()).value(QLatin1String("burns")).toInt(), 1);
    EXPECT_TRUE(s.bus.device(s.model()).value(QLatin1String("reports")).toArray().isEmpty());
    EXPECT_TRUE(s.program.runs(usbFlasher).isEmpty());
    EXPECT_TRUE(s.probe.waitForWholeText(connection, QStringLiteral("IAP Device Detected")));
    EXPECT_EQ(runsOf("Start"), (QList<QStringList>{list({"Start", "1", ""}) + idsInHex() +
                                                   list({"0", "0", "", "08004000", "true"}) +
                                                   QStringList{downloadedImage()}}));
}

TEST_F(IapUpdateTest, TheLogContainsAllStepsInOrder)
{
    UpdateScenario &s = iapScenario();
    startAndPressStart();
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    const QByteArray ids =
        QStringLiteral("IAPPVID: %1,%2").arg(idOfModel("productId")).arg(idOfModel("vendorId")).toLatin1();
    const QStringList lines = s.program.updateLogLines();
    int last = -1;
    for (const char *text :
         {"create IAPUpDate Mode...", "IAP Process exists", "IAP RunProcessGetData: no device",
          "create IAPUpDate Mode done.", "Find deviceName: DevMdq", "IAP RunProcessGetData: device: DevMdq;",
          "File MD5 verified successfully.", handedOver, "IAP comm ModeInit...",
          "check IAP Process exists...", ids.constData(), "IAP RunProcessGetData: device: DevMdq;",
          "IAPData: device: DevMdq;", "try to Start IAP Process...", "disable IAPbtnStart_", "SetProgress: 0",
          "SetProgress: 90"}) {
        const int at = lines.indexOf(QString::fromLatin1(text), last + 1);
        EXPECT_GT(at, last) << "missing or out of order: " << text;
        last = at;
    }
    // The main widget's lines are queued, but the panel's are not.
    EXPECT_GT(lines.indexOf(QStringLiteral("StopCheckConnectTimer.")),
              lines.indexOf(QStringLiteral("disable IAPbtnStart_")));
    EXPECT_EQ(linesBeginning("IAP finished, exitCode="), 1);
    EXPECT_GT(lines.indexOf(QLatin1String(enabledAgain), last + 1), last);
    EXPECT_TRUE(s.program.standardError().contains(QLatin1String("COMlist: DevMdq")));
}

TEST_F(IapUpdateTest, ALocalBinFileIsProgrammedByteForByte)
{
    UpdateScenario &s = iapScenario();
    s.withServer = false;
    startAndDetect();
    const char piece[] = "my own firmware 固件 \0 with a zero";
    const QByteArray bytes = QByteArray(piece, sizeof piece - 1).repeated(500);
    chooseFile(QStringLiteral("mine 2.bin"), bytes);
    ASSERT_TRUE(s.pressStart());
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), bytes);
    EXPECT_EQ(runsOf("Start").value(0).value(10), s.program.toProgramPath(m_file));
}

TEST_F(IapUpdateTest, AFileNameEndingInCapitalBinPasses)
{
    UpdateScenario &s = iapScenario();
    s.withServer = false;
    startAndDetect();
    chooseFile(QStringLiteral("MINE.BIN"), "capital");
    ASSERT_TRUE(s.pressStart());
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), QByteArray("capital"));
}

TEST_F(IapUpdateTest, AFileThatIsNoBinIsRefusedWithAWarningAndTheNextChoiceIsProgrammed)
{
    UpdateScenario &s = iapScenario();
    s.withServer = false;
    startAndDetect();
    chooseFile(QStringLiteral("mine.img"), "not for this device");
    ASSERT_TRUE(s.pressStart());
    const QString warning = QStringLiteral("Warning!");
    ASSERT_TRUE(s.probe.waitForWindow(warning)) << s.probe.errorText().toStdString();
    EXPECT_EQ(s.probe.window(warning).value(QLatin1String("text")).toString(),
              QStringLiteral("u are not chose update file.!"));
    EXPECT_TRUE(logHas("UpDateFile is not .bin.!"));
    EXPECT_FALSE(s.probe.isEnabled(startButton));
    ASSERT_TRUE(s.probe.pressDialogButton(QStringLiteral("Ok")));
    ASSERT_TRUE(s.probe.waitForEnabled(startButton, true));
    EXPECT_TRUE(runsOf("Start").isEmpty());
    chooseFile(QStringLiteral("mine.bin"), "for this device");
    ASSERT_TRUE(s.pressStart());
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), QByteArray("for this device"));
}

TEST_F(IapUpdateTest, TheWarningAboutTheFileIsShownForEachRefusedFile)
{
    UpdateScenario &s = iapScenario();
    s.withServer = false;
    startAndDetect();
    chooseFile(QStringLiteral("mine.img"), "not for this device");
    const QString warning = QStringLiteral("Warning!");
    for (int times = 0; times < 3; ++times) {
        ASSERT_TRUE(s.pressStart());
        ASSERT_TRUE(s.probe.waitForWindow(warning)) << s.probe.errorText().toStdString();
        ASSERT_TRUE(s.probe.pressDialogButton(QStringLiteral("Ok")));
        ASSERT_TRUE(s.probe.waitForNoWindow(warning));
        ASSERT_TRUE(s.probe.waitForEnabled(startButton, true)) << s.probe.errorText().toStdString();
    }
    closeAndExpectExit();
}

TEST_F(IapUpdateTest, WhileItRunsNothingElseStarts)
{
    UpdateScenario &s =
        iapScenario({{step("print", QStringLiteral("SetProgress: 42\n")), step("sleepMs", 2500),
                      step("program", true), step("print", QStringLiteral("SetProgress:100\n"))}});
    startAndDetect();
    ASSERT_TRUE(s.probe.check(iapBox));
    ASSERT_TRUE(s.probe.waitForVisible(panel, true));
    ASSERT_TRUE(s.pressStart());
    ASSERT_TRUE(waitForProgress(42));
    EXPECT_EQ(s.probe.text(title), QStringLiteral("Current Status: IAP Progress"));
    EXPECT_FALSE(s.probe.isEnabled(download));
    EXPECT_FALSE(s.probe.isEnabled(startButton));
    EXPECT_TRUE(s.probe.click(download));
    EXPECT_TRUE(s.probe.click(startButton));
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    EXPECT_EQ(runsOf("Start").size(), 1);
    EXPECT_EQ(s.burned(), s.image());
}

TEST_F(IapUpdateTest, TwoUpdatesInARowBothSucceed)
{
    UpdateScenario &s = iapScenario();
    startAndPressStart();
    EXPECT_EQ(titleOfRun(1), upgradeSuccessful);
    ASSERT_TRUE(s.pressStart());
    EXPECT_EQ(titleOfRun(2), upgradeSuccessful);
    EXPECT_EQ(s.bus.device(s.model()).value(QLatin1String("burns")).toInt(), 2);
}

TEST_F(IapUpdateTest, ADevMdhIsAnIapDeviceWhoseIdsReachThePanelOnlyWithAStart)
{
    UpdateScenario &s = scenario("DevMdh");
    startAndDetect();
    EXPECT_EQ(runsOf("GetData").value(1), list({"GetData", "-1", "-1"}));
    ASSERT_TRUE(s.pressStart());
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
}

} // namespace
