#pragma once

#include <QString>

/// Mounts that only this test and what it starts can see, until the test's process ends: the test has
/// to run in a mount namespace of its own, and each operation fails where it does not.
namespace OwnMounts {

/// Covers the folder with an empty file system of at most `kibibytes`.
bool inMemory(const QString &folder, int kibibytes);
/// Uncovers the folder. What still uses the file system keeps it alive.
void release(const QString &folder);
/// Makes the folder, with what is in it, read-only.
bool readOnly(const QString &folder);

} // namespace OwnMounts
