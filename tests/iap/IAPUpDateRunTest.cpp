#include "simulator/files/WholeFile.h"
#include "tests/common/AnotherAttempt.h"
#include "tests/common/ProcessGone.h"
#include "tests/common/TextList.h"
#include "tests/iap/IAPUpDateTest.h"

#include <QMessageBox>
#include <QSignalSpy>
#include <QTimer>

#include <functional>

namespace {

class IAPUpDateRunTest : public IAPUpDateTest
{
protected:
    /// Calls `act` as soon as a message box is shown.
    void whenTheWarningIsShown(const std::function<void(QMessageBox &)> &act)
    {
        QTimer::singleShot(5, &m_logWindow, [this, act] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
                act(*box);
            else
                whenTheWarningIsShown(act);
        });
    }
    /// Presses the button of the next message box and stores the properties of the box.
    void answerTheWarning()
    {
        whenTheWarningIsShown([this](QMessageBox &box) {
            m_warning = QStringList{box.windowTitle(), box.text()};
            m_warningIcon = box.icon();
            box.button(QMessageBox::Ok)->click();
        });
    }
    void run(const ToolSteps &body)
    {
        startBody(body);
        makePanel();
        ASSERT_TRUE(runToEnd());
    }

    QStringList m_warning;
    QMessageBox::Icon m_warningIcon = QMessageBox::NoIcon;
};

TEST_F(IAPUpDateRunTest, ARunLogsItsStepsInOrder)
{
    getData(ToolStep::print("device: one;\n"));
    startBody(ToolStep::print("SetProgress: 42\n") + m_tools.pause() + ToolStep::exitWith(0));
    m_host.device = {true, 0xA05A, 0xF113};
    makePanel();
    portType().setCurrentText(QStringLiteral("USB"));
    crc().setChecked(true);
    m_host.takeEvents();
    const RecordedDebugStream debug;
    QSignalSpy finished(&panel(), &IAPUpDate::iapFinished);
    download().click();
    EXPECT_TRUE(m_host.session().isWritingDevice());
    EXPECT_FALSE(download().isEnabled());
    ASSERT_TRUE(waitFor("picture 42"));
    m_tools.letGoOn();
    ASSERT_TRUE(waitFor("ended"));
    EXPECT_EQ(m_host.takeEvents(),
              list({"log IAP comm ModeInit...", "log check IAP Process exists...", "log IAPPVID: 41050,61715",
                    "log IAP RunProcessGetData: device: one;", "log IAPData: device: one;",
                    "log try to Start IAP Process...", "monitor off", "log disable IAPbtnStart_",
                    "title Current Status: Attempting to Upgrade...", "log SetProgress: 42",
                    "title Current Status: IAP Progress", "progress 42", "picture 42",
                    "log IAP finished, exitCode=0", "ended", "monitor on", "log enable IAPbtnStart_"}));
    EXPECT_FALSE(m_host.session().isWritingDevice());
    EXPECT_TRUE(download().isEnabled());
    EXPECT_EQ(finished, QList<QVariantList>{{true}});
    EXPECT_EQ(starts(), list({"Start|1||f113|a05a|0|0||08004000|true|/srv/dev.bin"}));
    EXPECT_EQ(debug.lines(), list({"onStartClicked", "Ret: device: one;", "COMlist: one",
                                   "IAPData: device: one;", "v: 42"}));
}

TEST_F(IAPUpDateRunTest, ItsTitlesHaveTheChineseTextsAsKeysAndSoAreEnglish)
{
    run(ToolStep::print("SetProgress: 100\n"));
    EXPECT_EQ(m_host.titleKeys,
              list({"当前状态: 尝试升级...", "当前状态: 正在进行IAP升级", "当前状态: 升级成功"}));
    EXPECT_TRUE(m_host.has("title Current Status: Attempting to Upgrade..."));
    EXPECT_TRUE(m_host.has("title Current Status: IAP Progress"));
    EXPECT_TRUE(m_host.has("title Current Status: Upgrade Successful"));
}

TEST_F(IAPUpDateRunTest, BeforeAnyIapDeviceHasBeenChosenTheIdsAreSentAsMinusOne)
{
    run({});
    EXPECT_TRUE(m_host.has("log Current PVID is Not IAP Dev.!"));
    EXPECT_EQ(runs(), list({"GetData|-1|-1", "Start|0||-1|-1|-1|-1|110|08004000|false|/srv/dev.bin"}));
}

TEST_F(IAPUpDateRunTest, ADeviceThatIsNotForIapDoesNotChangeTheIds)
{
    makePanel();
    panel().setDeviceIds(0xA05A, 0xF113);
    m_host.device = {false, 1, 2};
    ASSERT_TRUE(runToEnd());
    EXPECT_EQ(runs().at(0), QStringLiteral("GetData|f113|a05a"));
}

TEST_F(IAPUpDateRunTest, TheCommandLineTakesTheWholeFieldsAndNotWhatIsSelected)
{
    getData(ToolStep::print("COM:A;COM:B;\n"));
    makePanel();
    portType().setCurrentText(QStringLiteral("I2C"));
    portName().setCurrentIndex(1);
    baudRate().setCurrentIndex(2);
    find<QLineEdit>("iapAddress").setText(QStringLiteral("0 1F"));
    find<QLineEdit>("iapAppStartAddress").setText(QStringLiteral("08001000"));
    find<QLineEdit>("iapAppStartAddress").setSelection(0, 2);
    ASSERT_TRUE(runToEnd());
    EXPECT_EQ(starts(), list({"Start|4|0 1F|-1|-1|1|1|200K|08001000|false|/srv/dev.bin"}));
}

TEST_F(IAPUpDateRunTest, SetProgress100WithoutABlankIsASuccessAndEndsTheProgrammer)
{
    QSignalSpy finished(&panel(), &IAPUpDate::iapFinished);
    run(ToolStep::print("SetProgress:100\n") + ToolStep::hang());
    EXPECT_TRUE(m_host.has("title Current Status: Upgrade Successful"));
    EXPECT_TRUE(m_host.has("progress 100"));
    EXPECT_EQ(finished, QList<QVariantList>{{false}}) << "it was killed and did not end by itself";
}

TEST_F(IAPUpDateRunTest, OfTwoReportsInOneChunkTheFirstIsUsed)
{
    run(ToolStep::print("SetProgress: 7\nSetProgress: 9\n"));
    EXPECT_TRUE(m_host.has("progress 7"));
    EXPECT_FALSE(m_host.has("progress 9"));
    EXPECT_TRUE(m_host.has("log SetProgress: 7\nSetProgress: 9")) << "the whole chunk is logged";
}

TEST_F(IAPUpDateRunTest, TheMissingDeviceInLowerCaseStillFailsTheRunAndEndsTheProgrammer)
{
    run(ToolStep::print("no usb iap device!\n") + ToolStep::hang());
    EXPECT_TRUE(m_host.has("title Current Status: Upgrade Failed!"));
    EXPECT_EQ(m_host.titleKeys.last(), QStringLiteral("当前状态: 升级失败!"));
    EXPECT_FALSE(m_host.has("title Current Status: Upgrade Successful"));
}

TEST_F(IAPUpDateRunTest, AReportSplitBetweenTwoReadsIsTwoChunks)
{
    startBody(ToolStep::print("SetProgress: 4") + m_tools.pause() + ToolStep::print("2\n"));
    makePanel();
    download().click();
    ASSERT_TRUE(waitFor("progress 4"));
    m_tools.letGoOn();
    ASSERT_TRUE(waitFor("ended"));
    EXPECT_TRUE(m_host.has("log 2"));
    EXPECT_FALSE(m_host.has("progress 42"));
}

TEST_F(IAPUpDateRunTest, StandardErrorIsReadLikeTheOutput)
{
    run(ToolStep::printError("SetProgress: 5\n"));
    EXPECT_TRUE(m_host.has("progress 5"));
}

TEST_F(IAPUpDateRunTest, OtherOutputIsOnlyLogged)
{
    run(ToolStep::print(" erasing 固件 \n"));
    EXPECT_TRUE(m_host.has("log erasing 固件"));
    EXPECT_EQ(m_host.titleKeys.size(), 1);
}

TEST_F(IAPUpDateRunTest, AFailureCodeAndACrashAreNoSuccess)
{
    QSignalSpy finished(&panel(), &IAPUpDate::iapFinished);
    run(ToolStep::exitWith(3));
    EXPECT_TRUE(m_host.has("log IAP finished, exitCode=3"));
    run(ToolStep::crash());
    EXPECT_EQ(finished, (QList<QVariantList>{{false}, {false}}));
    EXPECT_TRUE(download().isEnabled());
}

TEST_F(IAPUpDateRunTest, AProgrammerThatIgnoresItsTerminationIsKilledASecondAfterTheFailure)
{
    dependsOnRealTime("the second that the programmer gets");
    startBody(ToolStep::ignoreTermination() + ToolStep::print("No USB IAP device!\n") + ToolStep::hang());
    makePanel();
    QElapsedTimer timer;
    download().click();
    ASSERT_TRUE(waitFor("title Current Status: Upgrade Failed!"));
    const RunningTimer running;
    timer.start();
    ASSERT_TRUE(waitFor("ended"));
    EXPECT_GE(timer.elapsed(), 800);
    EXPECT_LT(running.elapsed(), 8000);
}

TEST_F(IAPUpDateRunTest, AProgrammerThatVerifiesAfter100HasTenSecondsForIt)
{
    dependsOnRealTime("the ten seconds that the programmer gets");
    startBody(ToolStep::ignoreTermination() + ToolStep::print("SetProgress: 100\n") + ToolStep::hang());
    makePanel();
    QElapsedTimer timer;
    download().click();
    ASSERT_TRUE(waitFor("title Current Status: Upgrade Successful"));
    const RunningTimer running;
    timer.start();
    ASSERT_TRUE(waitFor("ended"));
    EXPECT_GE(timer.elapsed(), 9000);
    EXPECT_LT(running.elapsed(), 16000);
    EXPECT_TRUE(download().isEnabled());
}

TEST_F(IAPUpDateRunTest, AFileNameEndingInCapitalBinPasses)
{
    m_host.file = QStringLiteral("/srv/DEV.BIN");
    run({});
    EXPECT_EQ(starts().size(), 1);
}

TEST_F(IAPUpDateRunTest, AFileThatIsNoBinIsRefusedWithAWarning)
{
    for (const char *file : {"/srv/dev.img", "", "/srv/bin", "/srv/dev.bin.img"}) {
        m_host.file = QString::fromUtf8(file);
        makePanel();
        answerTheWarning();
        download().click();
        EXPECT_EQ(m_warning, list({"Warning!", "u are not chose update file.!"})) << file;
        EXPECT_EQ(m_warningIcon, QMessageBox::Warning);
        EXPECT_EQ(m_host.takeEvents().mid(5), list({"log try to Start IAP Process...", "monitor off",
                                                    "log UpDateFile is not .bin.!", "ended", "monitor on"}));
        EXPECT_TRUE(starts().isEmpty());
        EXPECT_TRUE(download().isEnabled());
    }
}

TEST_F(IAPUpDateRunTest, ShuttingDownClosesTheWarningAboutTheFile)
{
    makePanel();
    m_host.file = QStringLiteral("image.img");
    bool wasShown = false;
    whenTheWarningIsShown([&wasShown](QMessageBox &box) {
        wasShown = true;
        ShutdownFlag::instance().raise();
        EXPECT_FALSE(box.isVisible());
        box.close(); // if it is still open, the test would wait for ever
    });
    download().click();
    EXPECT_TRUE(wasShown);
    EXPECT_TRUE(m_host.has("log UpDateFile is not .bin.!"));
}

TEST_F(IAPUpDateRunTest, DownloadDuringAnUpdateOfTheFlashersIsRefusedWithALine)
{
    makePanel();
    m_host.file = QStringLiteral("/srv/image.img");
    ASSERT_TRUE(m_host.session().begin(UpdateStage::Flashing, m_host));
    download().click();
    EXPECT_EQ(m_host.takeEvents(), list({"log Download is not possible while an update is running."}));
    EXPECT_EQ(runs(), QStringList());
    EXPECT_EQ(m_host.session().stage(), UpdateStage::Flashing);
}

TEST_F(IAPUpDateRunTest, AFilePickedWhileTheProgrammerIsAskedIsForTheNextRun)
{
    makePanel();
    getData(m_tools.pause());
    QTimer::singleShot(0, &m_logWindow, [this] {
        m_host.file = QStringLiteral("/srv/next.bin");
        m_tools.letGoOn();
    });
    ASSERT_TRUE(runToEnd());
    ASSERT_EQ(starts().size(), 1);
    EXPECT_TRUE(starts().first().endsWith(QStringLiteral("|/srv/dev.bin")));
}

TEST_F(IAPUpDateRunTest, TheResultSaysWhatTheProgrammerReported)
{
    using Outcome = UpdateResult::Outcome;
    const auto resultOf = [this](const ToolSteps &body) {
        startBody(body);
        EXPECT_TRUE(runToEnd());
        m_host.takeEvents();
        return m_host.session().lastResult();
    };
    makePanel();
    EXPECT_EQ(resultOf(ToolStep::print("SetProgress: 100\n")),
              (UpdateResult{Outcome::Succeeded, UpdateStage::Programming, UpdateReason::None}));
    EXPECT_EQ(resultOf(ToolStep::print("SetProgress: 1") + ToolStep::sleepMs(200) + ToolStep::print("00\n")),
              (UpdateResult{Outcome::Succeeded, UpdateStage::Programming, UpdateReason::None}));
    EXPECT_EQ(resultOf(ToolStep::print("SetProgress: 99\n")),
              (UpdateResult{Outcome::Failed, UpdateStage::Programming, UpdateReason::WritingFailed}));
    EXPECT_EQ(resultOf(ToolStep::print("No USB IAP device!\n")),
              (UpdateResult{Outcome::Failed, UpdateStage::Programming, UpdateReason::DeviceNotReachable}));
}

TEST_F(IAPUpDateRunTest, ASecondStartDuringARunOnlyWarnsAndDoesNotChangeTheMonitor)
{
    startBody(m_tools.pause());
    makePanel();
    download().click();
    ASSERT_TRUE(m_host.session().isWritingDevice());
    m_host.takeEvents();
    const RecordedDebugStream debug;
    emit panel().sigStartClicked();
    EXPECT_EQ(debug.warnings(), list({"IAP already running"}));
    EXPECT_EQ(m_host.events(), QStringList());
    m_tools.letGoOn();
    ASSERT_TRUE(waitFor("ended"));
    EXPECT_EQ(starts().size(), 1);
}

TEST_F(IAPUpDateRunTest, WhileAnotherCopyOfTheProgramIsUpdatingAStartIsRefusedWithALine)
{
    makePanel();
    UpdateLock::Hold elsewhere = m_host.takeElsewhere();
    download().click();
    EXPECT_EQ(m_host.takeEvents(), list({"queued Another copy of this program is updating a device. "
                                         "Start again when it has finished."}));
    EXPECT_TRUE(runs().isEmpty());
    elsewhere.reset();
    EXPECT_TRUE(runToEnd());
}

TEST_F(IAPUpDateRunTest, AStartAfterAnotherCopysUpdateTakesTheFirstPortOfItsOwnAnswer)
{
    getData(ToolStep::print("COM:A;device:one;\n"));
    UpdateLock::Hold elsewhere = m_host.takeElsewhere();
    makePanel();
    panel().resetToUsb();
    EXPECT_EQ(portName().count(), 0);
    elsewhere.reset();
    ASSERT_TRUE(runToEnd());
    EXPECT_EQ(runs(), list({"GetData|-1|-1", "Start|1||-1|-1|0|0||08004000|true|/srv/dev.bin"}));
    EXPECT_EQ(items(portName()), list({"one"}));
}

TEST_F(IAPUpDateRunTest, ARunKeepsOtherCopiesOutFromItsStartToItsEnd)
{
    startBody(ToolStep::print("SetProgress: 42\n") + ToolStep::hang());
    makePanel();
    EXPECT_TRUE(m_host.takeElsewhere());
    download().click();
    ASSERT_TRUE(waitFor("progress 42"));
    EXPECT_FALSE(m_host.takeElsewhere());
    panel().findChild<QProcess *>()->kill();
    ASSERT_TRUE(waitFor("ended"));
    EXPECT_TRUE(m_host.takeElsewhere());
}

TEST_F(IAPUpDateRunTest, IfTheProgrammerCannotBeStartedNothingIsLoggedAndTheMonitorStaysOff)
{
    makePanel();
    removeProgrammer();
    download().click();
    EXPECT_EQ(m_host.takeEvents(), list({"log IAP comm ModeInit...", "log check IAP Process exists...",
                                         "log Current PVID is Not IAP Dev.!", "log IAPData: ",
                                         "log try to Start IAP Process...", "monitor off", "ended"}));
    EXPECT_TRUE(download().isEnabled());
    EXPECT_FALSE(m_host.session().isWritingDevice());
}

TEST_F(IAPUpDateRunTest, TwoRunsFollowEachOther)
{
    run(ToolStep::print("SetProgress: 100\n"));
    m_host.takeEvents();
    ASSERT_TRUE(runToEnd());
    EXPECT_EQ(starts().size(), 2);
    EXPECT_TRUE(m_host.has("title Current Status: Upgrade Successful"));
}

TEST_F(IAPUpDateRunTest, DeletingThePanelKillsTheProgrammerAndLogsIt)
{
    const QString pidFile = m_tools.file(QStringLiteral("pid"));
    startBody(ToolStep::ignoreTermination() + ToolStep::noteProcessId(pidFile) + ToolStep::print("noted\n") +
              ToolStep::hang());
    makePanel();
    download().click();
    ASSERT_TRUE(waitFor("log noted"));
    const qint64 pid = WholeFile::read(pidFile).trimmed().toLongLong();
    ASSERT_GT(pid, 0);
    EXPECT_FALSE(processIsGone(pid));
    m_host.takeEvents();
    m_panel.reset();
    EXPECT_TRUE(processIsReaped(pid));
    EXPECT_EQ(m_host.takeEvents(), list({"log The program was closed before the IAP programmer had ended."}));
}

TEST_F(IAPUpDateRunTest, ShuttingDownKillsTheProgrammerAtOnce)
{
    startBody(ToolStep::hang());
    makePanel();
    download().click();
    ASSERT_TRUE(m_host.session().isWritingDevice());
    ShutdownFlag::instance().raise();
    EXPECT_FALSE(m_host.session().isWritingDevice());
    EXPECT_FALSE(m_host.has("monitor on"));
}

} // namespace
