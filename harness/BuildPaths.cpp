#include "harness/BuildPaths.h"

namespace {

QString inBuild(const char *relative)
{
    const QString build =
        qEnvironmentVariable("QUILLMARSH_HARNESS_BUILD", QString::fromUtf8(QUILLMARSH_BUILD_DIR));
    return build + QLatin1Char('/') + QLatin1String(relative);
}

QString programInBuild(const char *name)
{
    return inBuild("bin/") + QLatin1String(name) + QLatin1String(QUILLMARSH_EXECUTABLE_SUFFIX);
}

} // namespace

QString BuildPaths::program()
{
    return programInBuild("quillmarsh");
}

QString BuildPaths::commandLineProgram()
{
    return programInBuild("quillmarsh-cli");
}

QString BuildPaths::busController()
{
    return programInBuild("quillmarsh-sim-bus");
}

QString BuildPaths::gadgetBusController()
{
    return programInBuild("quillmarsh-sim-bus-gadget");
}

QString BuildPaths::listedBusController()
{
    return programInBuild("quillmarsh-sim-bus-listed");
}

QString BuildPaths::firmwareServer()
{
    return programInBuild("quillmarsh-sim-server");
}

QString BuildPaths::standIn()
{
    return programInBuild("quillmarsh-standin");
}

QString BuildPaths::plugins()
{
    return inBuild("plugins");
}
