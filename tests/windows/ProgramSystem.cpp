#include "tests/endtoend/EndToEnd.h"

#include "harness/stage/WineSystem_linux.h"

std::unique_ptr<TargetSystem> EndToEnd::programSystem()
{
    return makeWineSystem(QStringLiteral(WINDOWS_BUILD), WindowsVersion::Windows10);
}
