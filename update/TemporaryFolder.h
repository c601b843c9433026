#pragma once

#include <QString>

/// The folder in which downloads wait to be written to a device, and the folders in it. What lies there is
/// checked once and handed to a flasher by its path later, so nobody else may be able to change it.
namespace TemporaryFolder {

/// What the system says of a path itself: a link is not followed.
struct Entry
{
    enum Kind { Missing, Folder, Link, Other };

    Kind kind = Missing;
    /// The user id of the owner.
    quint32 owner = 0;
    /// Permission bits as in POSIX, the sticky bit included.
    quint32 mode = 0;
};

/// Decides whether `user` can rely on what is in the folder at `path`, of which the system says `folder` and
/// of the folder around it `around`. Returns the reason for the log when not, else an empty text.
QString reasonNotToTrust(const QString &path, const Entry &folder, const Entry &around, quint32 user);

/// Asks the system. On Windows owner and mode are 0: rights are not expressed in them.
Entry entryOf(const QString &path);

/// Makes sure that the folder exists, with all its parents. If it is made, only its owner may enter it.
/// Returns whether it exists.
bool create(const QString &path);

/// Returns why the folder must not be used as it is now; empty when it may be. On Windows, which gives each
/// user a temporary folder that other users cannot write, only a link or a file in its place is a reason.
QString reasonNotToUse(const QString &path);

/// Like reasonNotToUse(), but also returns a reason when no file can be created in the folder.
QString reasonNotToWriteIn(const QString &path);

} // namespace TemporaryFolder
