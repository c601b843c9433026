#include "tests/common/ProcessGone.h"

#include <QFile>

bool processIsGone(qint64 processId)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(processId));
    if (!file.open(QIODevice::ReadOnly))
        return true;
    const QByteArray stat = file.readAll();
    return stat.isEmpty() || stat.mid(stat.lastIndexOf(')') + 2, 1) == "Z";
}

bool processIsReaped(qint64 processId)
{
    return !QFile::exists(QStringLiteral("/proc/%1").arg(processId));
}
