#include "tests/cli/CliEndingTest.h"

namespace {

TEST(CliEndingTableTest, TheTableHasEveryExitCode)
{
    QList<int> seen;
    for (const Ending &ending : endings())
        seen.append(ending.exitCode);
    for (const int exitCode : {0, 1, 2, 3, 4, 5, 6, 130})
        EXPECT_TRUE(seen.contains(exitCode)) << exitCode;
}

} // namespace
