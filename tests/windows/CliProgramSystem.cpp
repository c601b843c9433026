#include "tests/cli/CliTest.h"

#include "harness/stage/WineSystem_linux.h"

#include <csignal>

std::unique_ptr<TargetSystem> CliCases::programSystem()
{
    return makeWineCommandLineSystem(QStringLiteral(WINDOWS_BUILD));
}

QVector<int> CliCases::endingSignals()
{
    // Wine turns this one into the console's event of Ctrl+C, and has nothing for the others.
    return {SIGINT};
}

int CliCases::exitLimitMs()
{
    // The program's two seconds, and those that Wine takes to end a process on a busy machine.
    return 6000;
}
