#include "tests/endtoend/EndToEnd.h"

std::unique_ptr<TargetSystem> EndToEnd::programSystem()
{
    return makeNativeSystem(QStringLiteral(SIGNING_PROGRAM));
}
