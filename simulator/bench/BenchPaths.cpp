#include "simulator/bench/BenchPaths.h"

namespace {

QString inBuild(const char *relative)
{
    const QString build =
        qEnvironmentVariable("QUILLMARSH_BENCH_BUILD", QString::fromUtf8(QUILLMARSH_BUILD_DIR));
    return build + QLatin1Char('/') + QLatin1String(relative);
}

} // namespace

QString BenchPaths::program()
{
    return inBuild("bin/quillmarsh");
}

QString BenchPaths::busController()
{
    return inBuild("bin/quillmarsh-sim-bus");
}

QString BenchPaths::listedBusController()
{
    return inBuild("bin/quillmarsh-sim-bus-listed");
}

QString BenchPaths::firmwareServer()
{
    return inBuild("bin/quillmarsh-sim-server");
}

QString BenchPaths::standIn()
{
    return inBuild("bin/quillmarsh-standin");
}

QString BenchPaths::plugins()
{
    return inBuild("plugins");
}
