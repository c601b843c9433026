#include "simulator/bench/StageProcesses.h"

#include <QDir>
#include <QFile>

#include <csignal>

namespace {

bool runsFrom(const QString &folder, qint64 processId)
{
    const QString executable = QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(processId));
    return executable.startsWith(folder + QLatin1Char('/'));
}

} // namespace

QVector<qint64> processesRunningFrom(const QString &folder)
{
    QVector<qint64> found;
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &entry : entries) {
        const qint64 processId = entry.toLongLong();
        if (processId > 1 && runsFrom(folder, processId))
            found.append(processId);
    }
    return found;
}

void killProcessRunningFrom(const QString &folder, qint64 processId)
{
    if (runsFrom(folder, processId))
        ::kill(static_cast<pid_t>(processId), SIGKILL);
}
