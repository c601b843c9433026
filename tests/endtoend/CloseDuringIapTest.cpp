#include "tests/endtoend/IapTest.h"

namespace {

using namespace EndToEnd;

/// Closing the window while the IAP programmer is asked for its ports or programs a device.
using CloseDuringIapTest = IapTest;

TEST_F(CloseDuringIapTest, WhileItProgramsTheDefaultAnswerIsToStayAndTheUpdateSucceeds)
{
    UpdateScenario &s =
        iapScenario({{step("print", QStringLiteral("SetProgress: 42\n")), step("sleepMs", 3000),
                      step("program", true), step("print", QStringLiteral("SetProgress: 100\n"))}});
    startAndPressStart();
    ASSERT_TRUE(waitForProgress(42));
    closeAndExpectQuestion();
    ASSERT_TRUE(s.probe.type(question, QString(), Qt::Key_Return));
    ASSERT_TRUE(s.probe.waitForNoWindow(question));
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    closeAndExpectExit();
}

TEST_F(CloseDuringIapTest, WhileItProgramsAConfirmedCloseKillsItAndIsLogged)
{
    UpdateScenario &s = iapScenario(
        {{step("deaf", true), step("print", QStringLiteral("SetProgress: 42\n")), step("hang", true)}});
    startAndPressStart();
    ASSERT_TRUE(waitForProgress(42));
    ASSERT_EQ(s.program.runningProcesses().size(), 2);
    closeAndExpectQuestion();
    answerAndExpectExit();
    EXPECT_TRUE(logHas("The program was closed before the IAP programmer had ended."));
    EXPECT_FALSE(logHas("StartCheckConnectTimer."));
}

TEST_F(CloseDuringIapTest, WhileItVerifiesAfter100AConfirmedCloseKillsItToo)
{
    UpdateScenario &s =
        iapScenario({{step("deaf", true), step("program", true),
                      step("print", QStringLiteral("SetProgress: 100\n")), step("hang", true)}});
    startAndPressStart();
    ASSERT_TRUE(s.probe.waitForText(title, upgradeSuccessful, updateLimitMs));
    closeAndExpectQuestion();
    answerAndExpectExit();
    EXPECT_TRUE(logHas("SetProgress: 100"));
    EXPECT_EQ(s.burned(), s.image());
}

TEST_F(CloseDuringIapTest, IfThePortsNeverArriveTheWindowStillOpensAndCloses)
{
    UpdateScenario &s = scenario("DevMdq");
    s.program.setScript(programmer, scriptFor(QStringLiteral("GetData"), {{step("hang", true)}}));
    start();
    EXPECT_TRUE(s.probe.waitForVisible(startButton, true)) << s.probe.errorText().toStdString();
    ASSERT_TRUE(waitForLog("IAP Process exists"));
    ASSERT_TRUE(pollUntil([&] { return s.program.runningProcesses().size() == 2; }, eventLimitMs, 20));
    // Neither the user nor a timer can start anything meanwhile.
    EXPECT_TRUE(s.probe.click(startButton));
    EXPECT_FALSE(s.probe.waitForWholeText(connection, QStringLiteral("IAP Device Detected"), 2500));
    EXPECT_FALSE(logHas("click UpdateBtn ERROR - Not Check Dev!"));
    closeAndExpectExit();
    EXPECT_EQ(runsOf("GetData").size(), 1);
}

TEST_F(CloseDuringIapTest, IfThePortsNeverArriveBeforeAStartNothingIsAskedAndNothingStarts)
{
    UpdateScenario &s = scenario("DevMdq");
    const QJsonArray answer{step("print", QStringLiteral("device: one;"))};
    s.program.setScript(programmer,
                        scriptFor(QStringLiteral("GetData"), {answer, answer, {step("hang", true)}}));
    startAndPressStart();
    ASSERT_TRUE(waitForLog("check IAP Process exists..."));
    ASSERT_TRUE(pollUntil([&] { return runsOf("GetData").size() == 3; }, updateLimitMs, 20));
    closeAndExpectExit();
    EXPECT_TRUE(runsOf("Start").isEmpty());
}

TEST_F(CloseDuringIapTest, TheWarningAboutTheFileIsAnsweredFirstAndThenTheWindowCloses)
{
    UpdateScenario &s = scenario("DevMdq");
    startAndDetect();
    ASSERT_TRUE(s.probe.check(iapBox));
    ASSERT_TRUE(s.probe.waitForVisible(panel, true));
    ASSERT_TRUE(s.probe.click(download));
    ASSERT_TRUE(s.probe.waitForWindow(QStringLiteral("Warning!"))) << s.probe.errorText().toStdString();
    ASSERT_TRUE(s.probe.close(background));
    EXPECT_FALSE(s.probe.waitForNoWindow(QStringLiteral("Warning!"), 500)) << "it is modal";
    ASSERT_TRUE(s.probe.pressDialogButton(QStringLiteral("Ok")));
    ASSERT_TRUE(s.probe.waitForNoWindow(QStringLiteral("Warning!")));
    EXPECT_TRUE(s.probe.waitForEnabled(startButton, true));
    closeAndExpectExit();
}

} // namespace
