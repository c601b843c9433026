#include "update/LocalFiles.h"
#include "update/TemporaryFolder.h"

#include <QFileInfo>

TemporaryFolder::Entry TemporaryFolder::entryOf(const QString &path)
{
    const QFileInfo file(path);
    Entry entry;
    if (file.isSymLink())
        entry.kind = Entry::Link;
    else if (file.exists())
        entry.kind = file.isDir() ? Entry::Folder : Entry::Other;
    return entry;
}

bool TemporaryFolder::create(const QString &path)
{
    return LocalFiles::ensurePath(path);
}

QString TemporaryFolder::reasonNotToUse(const QString &path)
{
    return reasonNotToTrust(path, entryOf(path), Entry(), 0);
}
