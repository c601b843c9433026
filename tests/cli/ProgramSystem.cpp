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

int CliCases::exitLimitMs()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    // At the end of the program the sanitizer still looks for leaks.
    return 15000;
#else
    return 2000;
#endif
}
