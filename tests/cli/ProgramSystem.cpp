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
