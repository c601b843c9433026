#include "harness/BuildPaths.h"
#include "tests/cli/CliTest.h"

#include <csignal>

std::unique_ptr<TargetSystem> CliCases::programSystem()
{
    return makeNativeSystem(BuildPaths::commandLineProgram());
}

QVector<int> CliCases::endingSignals()
{
    return {SIGINT, SIGTERM, SIGHUP};
}

bool CliCases::canBeSignalled(qint64 /*programId*/)
{
    return true;
}

int CliCases::leaveLimitMs()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    // The sanitizer looks for leaks after the program has ended its own work.
    return 15000;
#else
    return 2000;
#endif
}
