#pragma once

#include <QString>

#include <memory>

/// A lock that the system keeps for this process: released by the destructor, and by the system when the
/// process dies. Not tied to a thread.
class SystemLock
{
public:
    virtual ~SystemLock() = default;
    /// Returns whether only processes of this user are kept out, because the system allowed no more.
    virtual bool isForThisUserOnly() const { return false; }
};

/// One attempt to take a SystemLock.
struct SystemLockAttempt
{
    /// Empty if the lock was not taken.
    std::unique_ptr<SystemLock> lock;
    /// Whether somebody else has the lock. If nobody has it and it was not taken either, the system cannot
    /// provide it.
    bool isTakenElsewhere = false;
};

/// Tries to take the lock of `file` without waiting. Two locks exclude each other, also within a process.
/// On Linux, locks with the same path belong together. On Windows, locks whose file has the same name in
/// whatever folder belong together, so that users with their own temporary folders share one.
/// May be called from any thread.
SystemLockAttempt trySystemLock(const QString &file);

/// Returns whether somebody, this process included, has the lock of `file`. Never takes it.
/// May be called from any thread.
bool isSystemLockTaken(const QString &file);
