#include "update/TemporaryFolder.h"

#include <QTemporaryFile>

namespace {

constexpr quint32 writableByOthers = 0022;
constexpr quint32 sticky = 01000;
constexpr quint32 administrator = 0;

/// Returns whether somebody other than `user` may replace the folders in `parent`.
bool canOthersReplaceIn(const TemporaryFolder::Entry &parent, quint32 user)
{
    if (parent.owner != user && parent.owner != administrator)
        return true;
    return (parent.mode & writableByOthers) != 0 && (parent.mode & sticky) == 0;
}

} // namespace

QString TemporaryFolder::reasonNotToTrust(const QString &path, const Entry &folder, const Entry &parent,
                                          quint32 user)
{
    if (folder.kind == Entry::Link)
        return path +
               QStringLiteral(" is a link to another place and is not used. Remove it and start again.");
    if (folder.kind != Entry::Folder)
        return path + QStringLiteral(" is not a folder.");
    if (folder.owner != user)
        return path +
               QStringLiteral(" belongs to another user and is not used. Have it removed, or set TMPDIR "
                              "to a folder of your own.");
    if ((folder.mode & writableByOthers) != 0)
        return path +
               QStringLiteral(" can be changed by other users and is not used. Remove it and start again.");
    if (canOthersReplaceIn(parent, user))
        return path +
               QStringLiteral(" can be replaced by other users and is not used. Set TMPDIR to a folder "
                              "of your own.");
    return {};
}

QString TemporaryFolder::reasonNotToWriteIn(const QString &path)
{
    QString reason = reasonNotToUse(path);
    if (!reason.isEmpty())
        return reason;
    // Tested by creating a file, because the meaning of permissions and attributes differs between systems.
    QTemporaryFile trial(path + QStringLiteral("/trial-XXXXXX"));
    if (!trial.open())
        return path + QStringLiteral(" cannot be written: ") + trial.errorString();
    return {};
}
