#include "tests/endtoend/CloseTest.h"

namespace {

using namespace EndToEnd;

const QString warning = QStringLiteral("警告");
const QString usbText = QStringLiteral("libusb初始化失败");
const QString hidText = QStringLiteral("HIDAPI初始化失败");

/// Closing the window before the event loop of the program runs, and starting with failed libraries.
class CloseDuringStartTest : public CloseTest
{
protected:
    void failToInitialise(const char *calls) { interpose("INTERPOSE_FAIL", QString::fromLatin1(calls)); }

    void expectBox(const QString &text, const QString &boxTitle, int icon)
    {
        ProbeClient &probe = scenario().probe;
        ASSERT_TRUE(probe.waitForWindow(text)) << probe.errorText().toStdString();
        const QJsonObject box = probe.window(text);
        EXPECT_EQ(box.value(QLatin1String("title")).toString(), boxTitle);
        EXPECT_EQ(box.value(QLatin1String("icon")).toInt(), icon);
        EXPECT_EQ(box.value(QLatin1String("buttons")).toArray().size(), 1);
    }
    void expectWarning(const QString &text) { expectBox(text, warning, 2); }

    void answer(const QString &text)
    {
        ProbeClient &probe = scenario().probe;
        ASSERT_TRUE(probe.pressDialogButton(QStringLiteral("Ok"))) << probe.errorText().toStdString();
        ASSERT_TRUE(probe.waitForNoWindow(text)) << probe.errorText().toStdString();
    }

    /// Expects that the window is open, searches for devices and can be closed.
    void expectUsableWindow(const QString &shownConnection)
    {
        ProbeClient &probe = scenario().probe;
        ASSERT_TRUE(probe.waitForVisible(startButton, true)) << probe.errorText().toStdString();
        EXPECT_TRUE(waitForLog("create IAPUpDate Mode done."));
        ASSERT_TRUE(pollUntil([&] { return ticks() >= 3; }, eventLimitMs, 50));
        EXPECT_EQ(probe.text(connection), shownConnection);
        closeAndExpectExit();
    }

    int ticks() { return scenario().program.standardError().count(QStringLiteral("当前检查到链接设备有:")); }
};

TEST_F(CloseDuringStartTest, AfterTheWarningThatLibusbFailedTheWindowOpensAndFindsNothing)
{
    failToInitialise("libusb_init");
    start();
    expectWarning(usbText);
    answer(usbText);
    expectUsableWindow(QStringLiteral("Device not detected"));
    EXPECT_TRUE(scenario().program.standardError().contains(QStringLiteral("libusb_initRET: -99")));
}

TEST_F(CloseDuringStartTest, AfterTheWarningThatHidapiFailedTheWindowStillOpens)
{
    failToInitialise("hid_init");
    start();
    expectWarning(hidText);
    answer(hidText);
    // The device is recognised by its USB ids.
    expectUsableWindow(QStringLiteral("Device Detected"));
    EXPECT_TRUE(
        scenario().program.standardError().contains(QStringLiteral("Failed to initialize HID library.")));
}

TEST_F(CloseDuringStartTest, WhenBothFailBothWarningsComeAndThenTheWindow)
{
    failToInitialise("libusb_init hid_init");
    start();
    expectWarning(usbText);
    answer(usbText);
    expectWarning(hidText);
    answer(hidText);
    expectUsableWindow(QStringLiteral("Device not detected"));
}

TEST_F(CloseDuringStartTest, AWarningIsAnsweredFirstAndThenTheWindowCloses)
{
    failToInitialise("libusb_init");
    start();
    expectWarning(usbText);
    const QJsonObject refused = scenario().probe.request(
        {{QLatin1String("op"), QLatin1String("close")}, {QLatin1String("object"), background}});
    EXPECT_TRUE(refused.value(QLatin1String("blocked")).toBool());
    EXPECT_FALSE(scenario().probe.window(usbText).isEmpty());
    // Closing the box is the same as Ok.
    ASSERT_TRUE(scenario().probe.close(QStringLiteral("QMessageBox")));
    ASSERT_TRUE(scenario().probe.waitForVisible(startButton, true));
    closeAndExpectExit();
}

TEST_F(CloseDuringStartTest, AWindowCloseBeforeTheLoopStartsIsRemembered)
{
    interpose("INTERPOSE_LOOP_MS", QStringLiteral("1000"));
    start();
    ASSERT_TRUE(waitForMark());
    closeAndExpectExit();
}

TEST_F(CloseDuringStartTest, AWindowCloseDuringAStepThatNeverReturnsEndsTheProgramToo)
{
    interpose("INTERPOSE_LOOP_MS", QStringLiteral("600000"));
    start();
    ASSERT_TRUE(waitForMark());
    closeAndExpectExit();
}

TEST_F(CloseDuringStartTest, WithoutAModelNameThereIsOnlyABoxAndExitCodeZero)
{
    UpdateScenario &s = scenario();
    s.arguments = QStringList{QStringLiteral("TessilonixUpDate")};
    start();
    const QString text = QStringLiteral("TessilonixDev isNull.!");
    expectBox(text, QStringLiteral("Error"), 1);
    EXPECT_TRUE(s.probe.isVisible(background));
    EXPECT_TRUE(s.probe.read(QStringLiteral("bringToForeground")).isEmpty());
    ASSERT_TRUE(s.probe.pressDialogButton(QStringLiteral("Ok")));
    EXPECT_EQ(s.bus.waitForExit(), std::make_optional(0));
    EXPECT_TRUE(s.program.updateLog().isEmpty());
    EXPECT_TRUE(s.program.runningProcesses().isEmpty());
    expectNoComplaint();
}

TEST_F(CloseDuringStartTest, AnEmptyModelNameEndsTheSameWayWhenTheBoxIsClosed)
{
    UpdateScenario &s = scenario();
    s.arguments = QStringList{QStringLiteral("TessilonixUpDate"), QString()};
    start();
    expectBox(QStringLiteral("TessilonixDev isNull.!"), QStringLiteral("Error"), 1);
    ASSERT_TRUE(s.probe.close(QStringLiteral("QMessageBox")));
    EXPECT_EQ(s.bus.waitForExit(), std::make_optional(0));
    EXPECT_TRUE(s.program.updateLog().isEmpty());
    expectNoComplaint();
}

TEST_F(CloseDuringStartTest, TheProgramCanBeStartedAndClosedAtOnceTwentyTimes)
{
    start();
    closeAndExpectExit();
    UpdateScenario &s = scenario();
    int timesStarted = 1;
    for (int timesEnded = 1; timesEnded < 20 && !HasFailure(); ++timesStarted) {
        ASSERT_TRUE(s.bus.run(s.program.launch())) << s.bus.errorText().toStdString();
        ASSERT_TRUE(s.probe.connectThrough(s.program.probePortFile())) << s.probe.errorText().toStdString();
        closeAndExpectExit(nullptr, WhenPaused::MayEndByWatchdog);
        // With so many starts a pause is likely during one of them: only that one is repeated.
        timesEnded += endedByWatchdogAfterPause() ? 0 : 1;
    }
    EXPECT_EQ(s.program.updateLogLines().count(QStringLiteral("create IAPUpDate Mode done.")), timesStarted);
}

} // namespace
