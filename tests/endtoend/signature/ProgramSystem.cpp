#include "tests/cli/CliTest.h"
#include "tests/endtoend/EndToEnd.h"

std::unique_ptr<TargetSystem> EndToEnd::programSystem()
{
    return makeNativeSystem(QStringLiteral(SIGNING_PROGRAM));
}

std::unique_ptr<TargetSystem> CliCases::programSystem()
{
    return makeNativeSystem(QStringLiteral(SIGNING_COMMAND_LINE_PROGRAM));
}
