#include "tests/endtoend/CloseDuringFlashingTest.h"

namespace {

using namespace EndToEnd;

/// Returns the number of bytes that a "flood" has left in these lines, without its line feeds.
int floodedBytes(const QStringList &lines)
{
    int bytes = 0;
    for (const QString &line : lines) {
        const QString word = line.trimmed().section(QLatin1Char(' '), -1);
        bytes += word.count(QLatin1Char('x')) == word.size() ? word.size() : 0;
    }
    return bytes;
}

/// The debug stream, which a window program has on Linux only, has each piece of the output before the log
/// gets it.
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

} // namespace
