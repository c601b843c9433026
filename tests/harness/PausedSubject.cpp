// Tests that stop their own process. They are run by the tests of measuring and handling pauses, which let
// the process continue.
#include "simulator/time/RunningTime.h"
#include "tests/common/AnotherAttempt.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <utility>

namespace {

bool isFirstAttempt()
{
    return std::getenv("QUILLMARSH_ATTEMPT") == nullptr;
}

/// Stops the process, if requested, in the first test of the first attempt.
void stopWhenAsked()
{
    static bool wasStopped = false;
    if (std::getenv("PAUSED_SUBJECT_STOPS") && isFirstAttempt() && !std::exchange(wasStopped, true))
        std::raise(SIGSTOP);
}

TEST(DeclaredTest, FailsInTheFirstAttempt)
{
    dependsOnRealTime("a limit");
    stopWhenAsked();
    EXPECT_FALSE(isFirstAttempt());
}

TEST(DeclaredTest, FailsInEveryAttempt)
{
    dependsOnRealTime("a limit");
    stopWhenAsked();
    FAIL();
}

TEST(UndeclaredTest, FailsInTheFirstAttempt)
{
    stopWhenAsked();
    EXPECT_FALSE(isFirstAttempt());
}

TEST(ClockTest, IsPrinted)
{
    QElapsedTimer wall;
    wall.start();
    const RunningTimer running;
    stopWhenAsked();
    std::cout << "wall " << wall.elapsed() << " running " << running.elapsed() << " paused "
              << running.pausedMs() << std::endl;
}

} // namespace
