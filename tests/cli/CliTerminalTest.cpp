#include "tests/cli/CliTest.h"
#include "tests/cli/PseudoTerminal_linux.h"

namespace {

using namespace CliCases;

const QByteArray question = "Update DevMaa? [y/N] ";

/// Runs the program on a terminal, with the test in the place of the user.
class CliTerminalTest : public CliTest
{
protected:
    void startOnTerminal(const QStringList &arguments, int columns = 80)
    {
        m_terminal = std::make_unique<PseudoTerminal>(columns);
        ASSERT_TRUE(m_terminal->isValid());
        scenario().program.startThrough({QStringLiteral("bash"), QStringLiteral("-c"),
                                         QStringLiteral("exec \"$@\" <\"$0\" >\"$0\""),
                                         m_terminal->device()});
        ASSERT_TRUE(scenario().start(arguments)) << scenario().errorText().toStdString();
    }
    bool waitForScreen(const QByteArray &text)
    {
        return pollUntil([&] { return m_terminal->screen().contains(text); });
    }
    int exitCode()
    {
        pollUntil(
            [&] {
                m_terminal->screen();
                return !scenario().bus.programState().running;
            },
            2 * eventLimitMs);
        return waitForExit();
    }
    /// Returns all lines of the screen, with each text that a rewritten line has shown as one of its own.
    QList<QByteArray> texts()
    {
        QByteArray screen = m_terminal->screen();
        return screen.replace("\r\n", "\n").replace('\r', '\n').split('\n');
    }

    std::unique_ptr<PseudoTerminal> m_terminal;
};

TEST_F(CliTerminalTest, ItAsksAndUpdatesAfterYes)
{
    CliScenario &s = scenario();
    startOnTerminal({update});
    ASSERT_TRUE(waitForScreen(question)) << m_terminal->screen().toStdString();
    expectUntouchedDevice();
    EXPECT_TRUE(s.bus.programState().running);
    ASSERT_TRUE(m_terminal->type("y\n"));
    EXPECT_EQ(exitCode(), 0);
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_TRUE(m_terminal->screen().contains("\rWriting the device: do not disconnect it  100 %"));
    EXPECT_TRUE(m_terminal->screen().endsWith("\x1b[32mDevMaa was updated.\x1b[0m\r\n"));
    // The device is shown before the question.
    EXPECT_LT(m_terminal->screen().indexOf("  DevMaa  ready"), m_terminal->screen().indexOf(question));
    EXPECT_GE(m_terminal->screen().indexOf("  DevMaa  ready"), 0);
}

TEST_F(CliTerminalTest, AnyOtherAnswerAndTheEndOfTheInputLeaveTheDeviceAlone)
{
    for (const char *keys : {"n\n", "\n", "yess\n", "\x04"}) {
        startOnTerminal({update});
        ASSERT_TRUE(waitForScreen(question));
        ASSERT_TRUE(m_terminal->type(keys));
        EXPECT_EQ(exitCode(), 130) << keys;
        EXPECT_TRUE(m_terminal->screen().contains("The update was cancelled"));
        expectUntouchedDevice();
    }
}

TEST_F(CliTerminalTest, AnInterruptionAtTheQuestionEndsItAtOnce)
{
    startOnTerminal({update});
    ASSERT_TRUE(waitForScreen(question));
    interrupt();
    EXPECT_EQ(exitCode(), 130);
    EXPECT_LE(m_sinceSignal.elapsed(), exitLimitMs());
    expectUntouchedDevice();
}

TEST_F(CliTerminalTest, WithYesOnTheCommandLineNothingIsAsked)
{
    startOnTerminal({update, QStringLiteral("--yes")});
    EXPECT_EQ(exitCode(), 0);
    EXPECT_FALSE(m_terminal->screen().contains("[y/N]"));
    EXPECT_EQ(scenario().burned(), scenario().image());
}

TEST_F(CliTerminalTest, WithJsonThereIsNoQuestionAndNoRewrittenLine)
{
    startOnTerminal({update, QStringLiteral("--json")});
    EXPECT_EQ(exitCode(), 0);
    const QByteArray screen = QByteArray(m_terminal->screen()).replace("\r\n", "\n");
    EXPECT_EQ(EventValidation::problemsIn(screen), QString());
}

TEST_F(CliTerminalTest, ANarrowTerminalIsNeverFilledToItsEdge)
{
    const int columns = 30;
    startOnTerminal({update, QStringLiteral("--yes"), QStringLiteral("--no-reset")}, columns);
    EXPECT_EQ(exitCode(), 0);
    bool hasLiveLine = false;
    for (const QByteArray &text : texts()) {
        if (!text.startsWith("Writing the device"))
            continue;
        hasLiveLine = true;
        EXPECT_LT(text.size(), columns);
    }
    EXPECT_TRUE(hasLiveLine);
}

TEST_F(CliTerminalTest, ThereIsNoColourIfTheUserWantsNone)
{
    scenario().program.setVariable(QStringLiteral("NO_COLOR"), QStringLiteral("1"));
    startOnTerminal({update, QStringLiteral("--yes")});
    EXPECT_EQ(exitCode(), 0);
    EXPECT_TRUE(m_terminal->screen().endsWith("DevMaa was updated.\r\n"));
    EXPECT_FALSE(m_terminal->screen().contains('\x1b'));
}

} // namespace
