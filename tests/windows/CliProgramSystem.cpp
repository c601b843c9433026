#include "tests/cli/CliTest.h"

#include "harness/stage/WineSystem_linux.h"
#include "simulator/files/WholeFile.h"

#include <QDir>

#include <csignal>

namespace {

QByteArray processFile(const QString &id, const char *name)
{
    return WholeFile::read(QStringLiteral("/proc/%1/").arg(id) + QLatin1String(name));
}

QByteArray prefixOf(const QString &id)
{
    for (const QByteArray &variable : processFile(id, "environ").split('\0')) {
        if (variable.startsWith("WINEPREFIX="))
            return variable;
    }
    return QByteArray();
}

bool isDesktopRunning(const QByteArray &prefix)
{
    for (const QString &id : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        if (processFile(id, "cmdline").contains("explorer.exe") && prefixOf(id) == prefix)
            return true;
    }
    return false;
}

} // namespace

std::unique_ptr<TargetSystem> CliCases::programSystem()
{
    return makeWineCommandLineSystem(QStringLiteral(WINDOWS_BUILD));
}

QVector<int> CliCases::endingSignals()
{
    // Wine turns this one into the console's event of Ctrl+C, and has nothing for the others.
    return {SIGINT};
}

bool CliCases::canBeSignalled(qint64 programId)
{
    // Wine's signal handler allocates memory, which hangs if the thread is interrupted while it holds the
    // lock of the C library's memory. It does so for long when it forks to start the desktop, which it needs
    // for the first event loop of all programs. Afterwards it waits for Wine's server, which is a read,
    // number 0.
    const QString id = QString::number(programId);
    return isDesktopRunning(prefixOf(id)) && processFile(id, "syscall").startsWith("0 ");
}

int CliCases::exitLimitMs()
{
    // The program's two seconds, and those that Wine takes to end a process on a busy machine.
    return 6000;
}
