#pragma once

#include <QFile>
#include <QList>

/// Whether no process has this id, or only one that has ended and waits for its parent to ask.
inline bool processIsGone(qint64 processId)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(processId));
    if (!file.open(QIODevice::ReadOnly))
        return true;
    const QByteArray stat = file.readAll();
    return stat.isEmpty() || stat.mid(stat.lastIndexOf(')') + 2, 1) == "Z";
}

/// Whether no process has this id, not even an ended one.
inline bool processIsReaped(qint64 processId)
{
    return !QFile::exists(QStringLiteral("/proc/%1").arg(processId));
}
