#include "tests/endtoend/CloseTest.h"

namespace {

using namespace EndToEnd;

const QString upgradeSuccessful = QStringLiteral("Upgrade Successful");
const QJsonObject firstMarker = step("print", QStringLiteral("Upgrade fwc: image.target.spl\n"));

/// Closing the window while a flasher runs or after one has run. The user is asked only while it writes.
class CloseDuringFlashingTest : public CloseTest
{
protected:
    void startWithScript(const QJsonDocument &flasherScript)
    {
        scenario().program.setScript(usbFlasher, flasherScript);
        startAndPress();
    }

    void waitUntilItWrites()
    {
        ASSERT_TRUE(scenario().probe.waitForValue(QStringLiteral("progressBar"), QStringLiteral("value"), 16,
                                                  updateLimitMs))
            << scenario().probe.errorText().toStdString();
    }

    /// Returns the number of bytes that a "flood" has left in these lines, without its line feeds.
    static int floodedBytes(const QStringList &lines)
    {
        int bytes = 0;
        for (const QString &line : lines) {
            const QString word = line.trimmed().section(QLatin1Char(' '), -1);
            bytes += word.count(QLatin1Char('x')) == word.size() ? word.size() : 0;
        }
        return bytes;
    }

    int ended()
    {
        const QVector<StandinRun> runs = scenario().program.runs(usbFlasher);
        return int(
            std::count_if(runs.begin(), runs.end(), [](const StandinRun &run) { return run.endMs >= 0; }));
    }
};

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

/// The debug stream has each piece of the output before the log gets it.
TEST_F(CloseDuringFlashingTest, InTheMiddleOfAFloodAConfirmedCloseKillsItAndTheLogHasEveryLineThatWasRead)
{
    constexpr int moreThanIsRead = 64 * 1024 * 1024;
    startWithScript(script({{firstMarker, step("flood", moreThanIsRead), step("hang", true)}}));
    waitUntilItWrites();
    ASSERT_TRUE(
        pollUntil([&] { return floodedBytes(scenario().program.updateLogLines()) > 0; }, updateLimitMs, 20));
    closeAndExpectQuestion();
    answerAndExpectExit();
    const QStringList log = scenario().program.updateLogLines();
    const int read = floodedBytes(scenario().program.standardError().split(QLatin1Char('\n')));
    EXPECT_GT(read, 0);
    EXPECT_LT(read, moreThanIsRead / 100 * 99) << "the flood was over before the close";
    EXPECT_GE(floodedBytes(log), read);
    EXPECT_EQ(log.last().toStdString(), closedEarly);
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
