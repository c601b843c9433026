#include "tests/endtoend/OwnMounts.h"

#include <QFile>

#include <sys/mount.h>
#include <sys/statvfs.h>

namespace {

/// Returns the flags of the mount that contains `path`; a namespace must keep them when it mounts it again.
unsigned long keptFlags(const QByteArray &path)
{
    struct statvfs info = {};
    if (statvfs(path.constData(), &info) != 0)
        return 0;
    unsigned long flags = 0;
    for (const auto &pair : {std::pair<unsigned long, unsigned long>{ST_NOSUID, MS_NOSUID},
                             {ST_NODEV, MS_NODEV},
                             {ST_NOEXEC, MS_NOEXEC},
                             {ST_NOATIME, MS_NOATIME},
                             {ST_RELATIME, MS_RELATIME}}) {
        if (info.f_flag & pair.first)
            flags |= pair.second;
    }
    return flags;
}

bool hasOwnMounts()
{
    return !qEnvironmentVariableIsEmpty("QUILLMARSH_OWN_MOUNTS");
}

} // namespace

bool OwnMounts::inMemory(const QString &folder, int kibibytes)
{
    const QByteArray path = QFile::encodeName(folder);
    const QByteArray options = "mode=1777,size=" + QByteArray::number(kibibytes) + 'k';
    return hasOwnMounts() && mount("tmpfs", path.constData(), "tmpfs", 0, options.constData()) == 0;
}

void OwnMounts::release(const QString &folder)
{
    umount2(QFile::encodeName(folder).constData(), MNT_DETACH);
}

bool OwnMounts::readOnly(const QString &folder)
{
    const QByteArray path = QFile::encodeName(folder);
    return hasOwnMounts() && mount(path.constData(), path.constData(), nullptr, MS_BIND, nullptr) == 0 &&
           mount(nullptr, path.constData(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY | keptFlags(path),
                 nullptr) == 0;
}
