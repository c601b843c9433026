#include "driver/WholeCopy.h"

#include <QDir>
#include <QFile>

namespace {

constexpr qint64 blockBytes = qint64(256) * 1024;

bool copyContents(QFile &from, QFile &to)
{
    while (!from.atEnd()) {
        const QByteArray block = from.read(blockBytes);
        if (block.isEmpty() || to.write(block) != block.size())
            return false;
    }
    return from.error() == QFile::NoError && to.flush();
}

} // namespace

bool copyWhole(const QString &source, const QString &destination)
{
    QFile from(source);
    if (QFile::exists(destination) || !from.open(QIODevice::ReadOnly))
        return false;
    // In the same folder, because renaming is atomic only within a file system.
    const QString partial = destination + QStringLiteral(".quillmarsh-new");
    QFile::remove(partial);
    QFile to(partial);
    const bool isWhole = to.open(QIODevice::WriteOnly | QIODevice::NewOnly) && copyContents(from, to);
    to.close();
    // Unlike QFile::rename(), QDir::rename() never copies. Neither overwrites an existing file.
    if (isWhole && QDir().rename(partial, destination))
        return true;
    QFile::remove(partial);
    return false;
}
