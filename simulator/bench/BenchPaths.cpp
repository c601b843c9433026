#include "simulator/bench/BenchPaths.h"

namespace {

QString inBuild(const char *relative)
{
    const QString build =
        qEnvironmentVariable("QUILLMARSH_BENCH_BUILD", QString::fromUtf8(QUILLMARSH_BUILD_DIR));
    return build + QLatin1Char('/') + QLatin1String(relative);
}

QString programInBuild(const char *name)
{
    return inBuild("bin/") + QLatin1String(name) + QLatin1String(QUILLMARSH_EXECUTABLE_SUFFIX);
}

} // namespace

QString BenchPaths::program()
{
    return programInBuild("quillmarsh");
}

QString BenchPaths::busController()
{
    return programInBuild("quillmarsh-sim-bus");
}

QString BenchPaths::listedBusController()
{
    return programInBuild("quillmarsh-sim-bus-listed");
}

QString BenchPaths::firmwareServer()
{
    return programInBuild("quillmarsh-sim-server");
}

QString BenchPaths::standIn()
{
    return programInBuild("quillmarsh-standin");
}

QString BenchPaths::plugins()
{
    return inBuild("plugins");
}
