#include "tests/cli/CliEndingTest.h"

namespace {

TEST_P(CliEndingTest, TheExitCodeAndTheLastEventSayHowItEnded)
{
    const Ending &ending = GetParam();
    s();
    if (ending.prepare)
        ending.prepare(*this);
    ASSERT_FALSE(HasFatalFailure());
    m_reportsBefore = reports();
    start(ending.arguments);
    ASSERT_FALSE(HasFatalFailure());
    if (ending.meanwhile)
        ending.meanwhile(*this);
    ASSERT_FALSE(HasFatalFailure());
    const int exitCode = waitForExit();
    const QString last = lastEventText();
    const QString became = device();
    EXPECT_EQ(exitCode, ending.exitCode);
    EXPECT_EQ(last, QLatin1String(ending.lastEvent));
    EXPECT_EQ(became, QLatin1String(ending.device));
    EXPECT_EQ(lastEvent().value(QLatin1String("exitCode")).toInt(-1), exitCode);
    std::cout << "ending: " << exitCode << " | " << ending.text << " | " << last.toStdString() << " | "
              << became.toStdString() << std::endl;
}

std::string nameOfEnding(const testing::TestParamInfo<Ending> &ending)
{
    return ending.param.name;
}

INSTANTIATE_TEST_SUITE_P(Each, CliEndingTest, testing::ValuesIn(endings()), nameOfEnding);

} // namespace
