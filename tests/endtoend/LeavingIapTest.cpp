#include "tests/endtoend/IapTest.h"

namespace {

using namespace EndToEnd;

/// Leaving while the IAP programmer is asked or at work.
using LeavingIapTest = IapTest;

TEST_F(LeavingIapTest, WhileItProgramsTheDefaultAnswerIsToStayAndTheUpdateSucceeds)
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
    closeAndExpectGone();
}

TEST_F(LeavingIapTest, WhileItProgramsAConfirmedCloseKillsItAndTheLogSaysSo)
{
    UpdateScenario &s = iapScenario(
        {{step("deaf", true), step("print", QStringLiteral("SetProgress: 42\n")), step("hang", true)}});
    startAndPressStart();
    ASSERT_TRUE(waitForProgress(42));
    ASSERT_EQ(s.program.runningProcesses().size(), 2);
    closeAndExpectQuestion();
    answerAndExpectGone();
    EXPECT_TRUE(logHas("The program was closed before the IAP programmer had ended."));
    EXPECT_FALSE(logHas("StartCheckConnectTimer."));
}

TEST_F(LeavingIapTest, WhileItVerifiesAfter100AConfirmedCloseKillsItToo)
{
    UpdateScenario &s =
        iapScenario({{step("deaf", true), step("program", true),
                      step("print", QStringLiteral("SetProgress: 100\n")), step("hang", true)}});
    startAndPressStart();
    ASSERT_TRUE(s.probe.waitForText(title, upgradeSuccessful, updateLimitMs));
    closeAndExpectQuestion();
    answerAndExpectGone();
    EXPECT_TRUE(logHas("SetProgress: 100"));
    EXPECT_EQ(s.burned(), s.image());
}

TEST_F(LeavingIapTest, WhenAnAnswerHasNoEndTheWindowStillOpensAndCloses)
{
    UpdateScenario &s = scenario("DevMdq");
    s.program.setScript(programmer, scriptFor(QStringLiteral("GetData"), {{step("hang", true)}}));
    start();
    EXPECT_TRUE(s.probe.waitForVisible(startButton, true)) << s.probe.errorText().toStdString();
    ASSERT_TRUE(waitForLog("IAP Process exists"));
    ASSERT_TRUE(pollUntil([&] { return s.program.runningProcesses().size() == 2; }, eventLimitMs, 20));
    // Nothing is begun meanwhile, by a person or by the clock.
    EXPECT_TRUE(s.probe.click(startButton));
    EXPECT_FALSE(s.probe.waitForWholeText(connection, QStringLiteral("IAP Device Detected"), 2500));
    EXPECT_FALSE(logHas("click UpdateBtn ERROR - Not Check Dev!"));
    closeAndExpectGone();
    EXPECT_EQ(runsOf("GetData").size(), 1);
}

TEST_F(LeavingIapTest, WhenTheAnswerBeforeAStartHasNoEndNothingIsAskedAndNothingStarts)
{
    UpdateScenario &s = scenario("DevMdq");
    const QJsonArray answer{step("print", QStringLiteral("device: one;"))};
    s.program.setScript(programmer,
                        scriptFor(QStringLiteral("GetData"), {answer, answer, {step("hang", true)}}));
    startAndPressStart();
    ASSERT_TRUE(waitForLog("check IAP Process exists..."));
    ASSERT_TRUE(pollUntil([&] { return runsOf("GetData").size() == 3; }, updateLimitMs, 20));
    closeAndExpectGone();
    EXPECT_TRUE(runsOf("Start").isEmpty());
}

TEST_F(LeavingIapTest, TheWarningAboutTheFileIsAnsweredFirstAndThenTheWindowCloses)
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
    closeAndExpectGone();
}

} // namespace
