#pragma once

#include <QString>

/// The folder for downloads, and the folders in it. An image is checked there first and passed to a flasher
/// by its path later, so nobody else must be able to change it in between.
namespace TemporaryFolder {

/// The properties of a path. They are those of the link if the path is one.
struct Entry
{
    enum Kind { Missing, Folder, Link, Other };

    Kind kind = Missing;
    /// The user id of the owner.
    quint32 owner = 0;
    /// Permission bits as in POSIX, the sticky bit included.
    quint32 mode = 0;
};

/// Checks whether somebody other than `user` can change the contents of the folder `path`, from the
/// properties of that folder and of its parent folder. Returns the reason not to use it, for the log, or an
/// empty string.
QString reasonNotToTrust(const QString &path, const Entry &folder, const Entry &parent, quint32 user);

/// Returns the properties of a path. Owner and mode are always 0 on Windows, which has other access rights.
Entry entryOf(const QString &path);

/// Creates the folder with all its parents if needed. Only the owner may access a folder created here.
/// Returns whether the folder exists.
bool create(const QString &path);

/// Returns why the folder must not be used in its current state, or an empty string. On Windows, where each
/// user has a separate temporary folder, the only reasons are a link and a file with this name.
QString reasonNotToUse(const QString &path);

/// Like reasonNotToUse(), but also returns a reason if no file can be created in the folder.
QString reasonNotToWriteIn(const QString &path);

} // namespace TemporaryFolder
