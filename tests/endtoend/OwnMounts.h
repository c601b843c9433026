#pragma once

#include <QString>

/// Mounts that only this test and its child processes can see, until the process of the test ends. The
/// functions fail unless the test runs in a mount namespace of its own.
namespace OwnMounts {

/// Mounts an empty file system of at most `kibibytes` on the folder.
bool inMemory(const QString &folder, int kibibytes);
/// Unmounts it again. Processes that still use the file system keep it alive.
void release(const QString &folder);
/// Makes the folder and its contents read-only.
bool readOnly(const QString &folder);

} // namespace OwnMounts
