#include "tests/endtoend/CloseDuringFlashingTest.h"

namespace {

using namespace EndToEnd;

const QString upgradeSuccessful = QStringLiteral("Upgrade Successful");

TEST_F(CloseDuringFlashingTest, WhileItWritesTheDefaultAnswerIsToStayAndTheUpdateSucceeds)
{
    UpdateScenario &s = scenario();
    startWithScript(
        scriptFor(QStringLiteral("image"), {{firstMarker, step("sleepMs", 3000), step("progress", true),
                                             step("burn", true), step("success", true)}}));
    waitUntilItWrites();
    closeAndExpectQuestion();
    ASSERT_TRUE(s.probe.type(question, QString(), Qt::Key_Return));
    ASSERT_TRUE(s.probe.waitForNoWindow(question)) << s.probe.errorText().toStdString();
    ASSERT_TRUE(s.probe.waitForText(title, upgradeSuccessful, updateLimitMs));
    EXPECT_EQ(s.burned(), s.image());
    ASSERT_TRUE(s.probe.waitForEnabled(startButton, true, updateLimitMs));
    closeAndExpectExit();
}

TEST_F(CloseDuringFlashingTest, WhileItWritesClosingTheQuestionMeansStay)
{
    startWithScript(script({{firstMarker, step("hang", true)}}));
    waitUntilItWrites();
    closeAndExpectQuestion();
    ASSERT_TRUE(scenario().probe.close(question));
    ASSERT_TRUE(scenario().probe.waitForNoWindow(question));
    closeAndExpectQuestion();
    answerAndExpectExit();
}

TEST_F(CloseDuringFlashingTest, WhileItWritesAConfirmedCloseKillsIt)
{
    startWithScript(script({{firstMarker, step("hang", true)}}));
    waitUntilItWrites();
    closeAndExpectQuestion();
    ASSERT_EQ(scenario().program.runningProcesses().size(), 2);
    answerAndExpectExit();
    EXPECT_EQ(ended(), 0);
    EXPECT_TRUE(logHas("Upgrade fwc: image.target.spl"));
    EXPECT_TRUE(logHas(closedEarly));
}

TEST_F(CloseDuringFlashingTest, BetweenTwoAttemptsNothingIsAsked)
{
    startWithScript(script({unreachable()}));
    // The time between two attempts is one second; on a busy machine the close may come too late.
    for (int tries = 1; tries < 10; ++tries) {
        ASSERT_TRUE(pollUntil([&] { return ended() >= tries; }, updateLimitMs));
        QThread::msleep(150);
        if (ended() == tries && scenario().program.runs(usbFlasher).size() == tries)
            break;
    }
    closeAndExpectExit();
}

TEST_F(CloseDuringFlashingTest, AResetThatHangsIsKilledAndNothingIsAsked)
{
    startWithScript(scriptFor(QStringLiteral("shcmd"), {{step("hang", true)}}));
    ASSERT_TRUE(waitForLog("try to RunCmdReset..."));
    ASSERT_TRUE(
        pollUntil([&] { return scenario().program.runs(usbFlasher).size() == 2; }, updateLimitMs, 20));
    closeAndExpectExit();
    EXPECT_TRUE(logHas("Process did not finish!"));
}

TEST_F(CloseDuringFlashingTest, InTheEndingLoopOfALaunchModeNothingIsAsked)
{
    UpdateScenario &s = scenario();
    s.arguments = QStringList{QStringLiteral("TessilonixUpDate"), s.model()};
    start();
    ASSERT_TRUE(waitForLog("Burn Program Done Now blocking Program because In ZN58|Tessilonix Mode.!"));
    closeAndExpectExit();
    EXPECT_EQ(s.burned(), s.image());
}

} // namespace
