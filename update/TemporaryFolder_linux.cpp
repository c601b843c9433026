#include "update/TemporaryFolder.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

namespace {

TemporaryFolder::Entry entryFrom(const struct stat &status)
{
    TemporaryFolder::Entry entry;
    entry.kind = S_ISDIR(status.st_mode)   ? TemporaryFolder::Entry::Folder
                 : S_ISLNK(status.st_mode) ? TemporaryFolder::Entry::Link
                                           : TemporaryFolder::Entry::Other;
    entry.owner = status.st_uid;
    entry.mode = status.st_mode & 07777;
    return entry;
}

/// Returns the properties of the parent folder of `path`. Links are followed, because the administrator may
/// have made the system's temporary folder a link.
TemporaryFolder::Entry parentOf(const QString &path)
{
    const QString around = QFileInfo(path).absolutePath();
    struct stat status = {};
    if (stat(QFile::encodeName(around).constData(), &status) != 0)
        return {};
    return entryFrom(status);
}

} // namespace

TemporaryFolder::Entry TemporaryFolder::entryOf(const QString &path)
{
    struct stat status = {};
    if (lstat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    return entryFrom(status);
}

bool TemporaryFolder::create(const QString &path)
{
    if (QDir(path).exists())
        return true;
    const bool created = QDir().mkpath(QFileInfo(path).absolutePath()) &&
                         mkdir(QFile::encodeName(path).constData(), S_IRWXU) == 0;
    qDebug().noquote() << (created ? "Created:" : "Create failed:") << path;
    return created;
}

QString TemporaryFolder::reasonNotToUse(const QString &path)
{
    return reasonNotToTrust(path, entryOf(path), parentOf(path), geteuid());
}
