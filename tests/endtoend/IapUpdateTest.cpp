#include "tests/endtoend/IapTest.h"
#include "tests/endtoend/LocalFiles.h"

#include "simulator/bench/BenchPaths.h"
#include "simulator/bench/ModelOnBus.h"

#include <QPoint>

namespace {

using namespace EndToEnd;

QStringList list(std::initializer_list<const char *> items)
{
    QStringList texts;
    for (const char *item : items)
        texts.append(QString::fromUtf8(item));
    return texts;
}

class IapUpdateTest : public IapTest
{
protected:
    void chooseFile(const QString &name, const QByteArray &contents)
    {
        UpdateScenario &s = scenario();
        m_file = makeFolder(s, "firmware") + QLatin1Char('/') + name;
        ASSERT_TRUE(writeFile(m_file, contents));
        ASSERT_TRUE(FileRow::reveal(s.probe));
        ASSERT_TRUE(FileRow::choose(s.probe, m_file)) << s.probe.errorText().toStdString();
    }

    QString m_file;
};

TEST_F(IapUpdateTest, AnIapModelIsProgrammedWithTheServersImageAndTheChipsFlasherDoesNotRun)
{
    UpdateScenario &s = iapScenario();
    startAndPressStart();
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_EQ(s.bus.device(s.model()).value(QLatin1String("burns")).toInt(), 1);
    EXPECT_TRUE(s.bus.device(s.model()).value(QLatin1String("reports")).toArray().isEmpty());
    EXPECT_TRUE(s.program.runs(usbFlasher).isEmpty());
    EXPECT_TRUE(s.probe.waitForText(connection, QStringLiteral("IAP Device Detected"), 5000));
    EXPECT_EQ(runsOf("Start"),
              (QList<QStringList>{list({"Start", "1", "", "f113", "a05a", "0", "0", "", "08004000", "true"}) +
                                  QStringList{downloadedImage()}}));
}

TEST_F(IapUpdateTest, TheLogTellsTheWholeStoryInOrder)
{
    UpdateScenario &s = iapScenario();
    startAndPressStart();
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    const QStringList lines = s.program.updateLogLines();
    int last = -1;
    for (const char *text :
         {"create IAPUpDate Mode...", "IAP Process exists", "IAP RunProcessGetData: no device",
          "create IAPUpDate Mode done.", "Find deviceName: DevMdq", "IAP RunProcessGetData: device: DevMdq;",
          "File MD5 verified successfully.", handedOver, "IAP comm ModeInit...",
          "check IAP Process exists...", "IAPPVID: 41050,61715", "IAP RunProcessGetData: device: DevMdq;",
          "IAPData: device: DevMdq;", "try to Start IAP Process...", "disable IAPbtnStart_", "SetProgress: 0",
          "SetProgress: 90"}) {
        const int at = lines.indexOf(QString::fromLatin1(text), last + 1);
        EXPECT_GT(at, last) << "missing or out of order: " << text;
        last = at;
    }
    // The main widget's own line stands in the queue that the panel's lines do not wait in.
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
    const QByteArray bytes = QByteArray("my own firmware 固件 \0 with a zero", 38).repeated(500);
    chooseFile(QStringLiteral("mine 2.bin"), bytes);
    ASSERT_TRUE(s.pressStart());
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), bytes);
    EXPECT_EQ(runsOf("Start").value(0).value(10), m_file);
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
    ASSERT_TRUE(s.probe.waitForWindow(warning, 10000)) << s.probe.errorText().toStdString();
    EXPECT_EQ(s.probe.window(warning).value(QLatin1String("text")).toString(),
              QStringLiteral("u are not chose update file.!"));
    EXPECT_TRUE(logHas("UpDateFile is not .bin.!"));
    EXPECT_FALSE(s.probe.isEnabled(startButton));
    ASSERT_TRUE(s.probe.pressDialogButton(QStringLiteral("Ok")));
    ASSERT_TRUE(s.probe.waitForEnabled(startButton, true, 5000));
    EXPECT_TRUE(runsOf("Start").isEmpty());
    EXPECT_FALSE(QFile::exists(lockFile()));
    chooseFile(QStringLiteral("mine.bin"), "for this device");
    ASSERT_TRUE(s.pressStart());
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), QByteArray("for this device"));
}

TEST_F(IapUpdateTest, WhileItRunsNothingElseStartsAndOtherCopiesAreKeptOut)
{
    UpdateScenario &s =
        iapScenario({{step("print", QStringLiteral("SetProgress: 42\n")), step("sleepMs", 2500),
                      step("program", true), step("print", QStringLiteral("SetProgress:100\n"))}});
    startAndDetect();
    ASSERT_TRUE(s.probe.check(iapBox));
    ASSERT_TRUE(s.probe.waitForVisible(panel, true, 5000));
    ASSERT_TRUE(s.pressStart());
    ASSERT_TRUE(waitForProgress(42));
    EXPECT_EQ(s.probe.text(title), QStringLiteral("Current Status: IAP Progress"));
    EXPECT_FALSE(s.probe.isEnabled(download));
    EXPECT_FALSE(s.probe.isEnabled(startButton));
    EXPECT_TRUE(QFile::exists(lockFile()));
    EXPECT_TRUE(s.probe.click(download));
    EXPECT_TRUE(s.probe.click(startButton));
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    EXPECT_EQ(runsOf("Start").size(), 1);
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_FALSE(QFile::exists(lockFile()));
}

TEST_F(IapUpdateTest, ThePanelsOwnButtonProgramsTheChosenFile)
{
    UpdateScenario &s = iapScenario();
    s.withServer = false;
    startAndDetect();
    chooseFile(QStringLiteral("mine.bin"), "through the panel");
    ASSERT_TRUE(s.probe.check(iapBox));
    ASSERT_TRUE(s.probe.waitForVisible(panel, true, 5000));
    EXPECT_EQ(s.probe.text(QStringLiteral("iapPortName")), s.model());
    ASSERT_TRUE(s.probe.click(download));
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), QByteArray("through the panel"));
    EXPECT_FALSE(logHas(handedOver));
}

TEST_F(IapUpdateTest, WithoutAProgrammerStartSaysNothingAndTheStartButtonStaysOff)
{
    UpdateScenario &s = iapScenario();
    ASSERT_TRUE(QFile::remove(s.program.applicationFolder() + QLatin1Char('/') + programmer));
    start();
    ASSERT_TRUE(s.probe.waitForText(connection, QStringLiteral("IAP Device Detected"), 10000));
    EXPECT_TRUE(logHas("IAP Process not exists.!"));
    ASSERT_TRUE(s.pressStart());
    ASSERT_TRUE(waitForLog("StopCheckConnectTimer."));
    ASSERT_TRUE(s.bus.unplug(s.model()));
    EXPECT_FALSE(s.probe.waitForEnabled(startButton, true, 2500));
    EXPECT_EQ(s.probe.text(connection), QStringLiteral("IAP Device Detected")) << "the monitor runs";
    EXPECT_TRUE(s.probe.isEnabled(download));
    EXPECT_FALSE(logHas("StartCheckConnectTimer."));
    EXPECT_EQ(linesBeginning(asked), 0);
    EXPECT_FALSE(QFile::exists(lockFile()));
    closeAndExpectGone();
}

TEST_F(IapUpdateTest, ADeviceThatHasGoneFailsAndTheControlsComeBack)
{
    UpdateScenario &s = iapScenario();
    s.withServer = false;
    startAndDetect();
    chooseFile(QStringLiteral("mine.bin"), "too late");
    s.program.setScript(
        programmer, QJsonDocument(QJsonObject{
                        {QLatin1String("Start"),
                         script({{step("print", QStringLiteral("NO usb IAP Device!\n")), step("hang", true)}})
                             .object()}}));
    ASSERT_TRUE(s.pressStart());
    EXPECT_EQ(titleOfRun(), upgradeFailed);
    EXPECT_TRUE(s.burned().isEmpty());
    EXPECT_TRUE(s.program.runningProcesses().size() == 1);
}

TEST_F(IapUpdateTest, ProgressInSplitChunksASilenceACrashAndAnExitCodeAllGiveTheControlsBack)
{
    UpdateScenario &s =
        iapScenario({{QJsonObject{{QLatin1String("print"), QStringLiteral("SetProgress: 42\n")},
                                  {QLatin1String("splitAt"), 14},
                                  {QLatin1String("pauseMs"), 300}},
                      step("exit", 0)},
                     {step("sleepMs", 200)},
                     {step("print", QStringLiteral("SetProgress: 5\n")), step("crash", true)},
                     {step("print", QStringLiteral("SetProgress: 6\n")), step("exit", 3)}});
    s.withServer = false;
    startAndDetect();
    chooseFile(QStringLiteral("mine.bin"), "bytes");
    for (int runs = 1; runs <= 4; ++runs) {
        ASSERT_TRUE(s.pressStart());
        EXPECT_EQ(titleOfRun(runs), runs == 2 ? QStringLiteral("Current Status: Attempting to Upgrade...")
                                              : QStringLiteral("Current Status: IAP Progress"));
    }
    // The first read ends behind the 4, and a chunk is taken as it comes.
    EXPECT_TRUE(logHas("SetProgress: 4"));
    EXPECT_TRUE(logHas("2"));
    EXPECT_TRUE(logHas("IAP finished, exitCode=0"));
    EXPECT_TRUE(logHas("IAP finished, exitCode=3"));
    EXPECT_TRUE(s.burned().isEmpty());
}

TEST_F(IapUpdateTest, AProgrammerThatVerifiesAfter100AndDoesNotHearOfItsTerminationIsKilledInTheEnd)
{
    UpdateScenario &s =
        iapScenario({{step("deaf", true), step("program", true),
                      step("print", QStringLiteral("SetProgress: 100\n")), step("hang", true)}});
    startAndPressStart();
    ASSERT_TRUE(s.probe.waitForText(title, upgradeSuccessful, updateLimitMs));
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(s.probe.isEnabled(startButton));
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    EXPECT_GE(timer.elapsed(), 8000);
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_EQ(s.program.runningProcesses().size(), 1);
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

TEST_F(IapUpdateTest, DetectionHandsTheIdsOverAndSetsThePanelToUsb)
{
    UpdateScenario &s = iapScenario();
    startAndDetect();
    EXPECT_EQ(runsOf("GetData").mid(0, 2),
              (QList<QStringList>{list({"GetData", "-1", "-1"}), list({"GetData", "f113", "a05a"})}));
    EXPECT_EQ(s.probe.text(QStringLiteral("iapPortType")), QStringLiteral("USB"));
    EXPECT_EQ(s.probe.read(QStringLiteral("iapPortName")).value(QLatin1String("currentIndex")).toInt(), 0);
    EXPECT_TRUE(s.probe.isChecked(QStringLiteral("iapCrcVerify")));
    EXPECT_EQ(s.probe.read(connection).value(QLatin1String("styleSheet")).toString(),
              QStringLiteral("color: green;"));
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

TEST_F(IapUpdateTest, ThePanelFollowsTheMovedMainWindow)
{
    UpdateScenario &s = iapScenario();
    startAndDetect();
    EXPECT_FALSE(s.probe.isVisible(panel));
    ASSERT_TRUE(s.probe.check(iapBox));
    ASSERT_TRUE(s.probe.waitForVisible(panel, true, 5000));
    const auto cornerIs = [&](int x, int y) {
        return pollUntil(
            [&] {
                const QJsonArray at = s.probe.read(panel).value(QLatin1String("geometry")).toArray();
                return at.at(0).toInt() == x && at.at(1).toInt() == y;
            },
            5000, 20);
    };
    for (const QPoint &place : {QPoint(40, 30), QPoint(100, 200)}) {
        ASSERT_TRUE(s.probe.move(background, place.x(), place.y()));
        EXPECT_TRUE(cornerIs(place.x() + 799, place.y()))
            << QJsonDocument(s.probe.read(panel)).toJson().toStdString();
    }
}

TEST_F(IapUpdateTest, TheBoxShowsThePanelAndClosingThePanelUnticksTheBox)
{
    UpdateScenario &s = iapScenario();
    start();
    ASSERT_TRUE(s.probe.check(iapBox));
    ASSERT_TRUE(s.probe.waitForVisible(panel, true, 5000));
    ASSERT_TRUE(s.probe.check(iapBox, false));
    ASSERT_TRUE(s.probe.waitForVisible(panel, false, 5000));
    ASSERT_TRUE(s.probe.check(iapBox));
    ASSERT_TRUE(s.probe.waitForVisible(panel, true, 5000));
    ASSERT_TRUE(s.probe.close(panel));
    ASSERT_TRUE(s.probe.waitForVisible(panel, false, 5000));
    EXPECT_FALSE(s.probe.isChecked(iapBox));
    EXPECT_TRUE(s.bus.programState().running);
}

TEST_F(IapUpdateTest, ATickWhileThePanelIsMadeCounts)
{
    UpdateScenario &s = iapScenario();
    s.program.setScript(programmer,
                        QJsonDocument(QJsonObject{
                            {QLatin1String("GetData"), script({{step("sleepMs", 3000)}, {}}).object()}}));
    start();
    ASSERT_TRUE(s.probe.waitForVisible(iapBox, true, 5000));
    ASSERT_TRUE(s.probe.check(iapBox));
    EXPECT_TRUE(pollUntil([&] { return s.probe.isChecked(iapBox); }, 5000, 20));
    EXPECT_EQ(linesBeginning(asked), 0);
    EXPECT_TRUE(s.probe.waitForVisible(panel, true, 10000));
    EXPECT_TRUE(s.probe.isChecked(iapBox));
}

TEST_F(IapUpdateTest, StaleProgrammersAreEndedAtTheBeginningAndAtTheEnd)
{
    UpdateScenario &s = iapScenario();
    const QString taskkill = QStringLiteral("taskkill");
    ASSERT_TRUE(s.program.addTool(taskkill, BenchPaths::standIn(), script({{step("exit", 0)}})));
    s.program.setVariable(QStringLiteral("PATH"),
                          s.program.applicationFolder() + QLatin1Char(':') + qEnvironmentVariable("PATH"));
    start();
    ASSERT_TRUE(waitForLog("create IAPUpDate Mode done."));
    const QStringList arguments = list({"/F", "/IM", "IAP_Programmer.exe"});
    EXPECT_EQ(argumentsOf(s.program, taskkill), QList<QStringList>{arguments});
    EXPECT_EQ(s.closeWindow(), 0);
    EXPECT_EQ(argumentsOf(s.program, taskkill), (QList<QStringList>{arguments, arguments}));
}

} // namespace
