#include "harness/stage/StageProcesses.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <csignal>

namespace {

bool isMappedFrom(const QString &folder, qint64 processId)
{
    QFile maps(QStringLiteral("/proc/%1/maps").arg(processId));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(' ' + folder.toUtf8() + '/');
}

bool runsFrom(const QString &folder, qint64 processId)
{
    const QString executable = QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(processId));
    if (executable.startsWith(folder + QLatin1Char('/')))
        return true;
    // The executable of a Windows program is Wine's loader; the program is mapped into its memory.
    return QFileInfo(executable).fileName().startsWith(QLatin1String("wine")) &&
           isMappedFrom(folder, processId);
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
