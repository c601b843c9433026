#pragma once

#include <QString>

#include <memory>

/// A lock that this process holds. The destructor releases it, and so does the system when the process dies.
/// It does not belong to a thread.
class SystemLock
{
public:
    virtual ~SystemLock() = default;
    /// Returns whether only processes of the same user are kept out, because the system did not allow a lock
    /// for all users.
    virtual bool isForThisUserOnly() const { return false; }
};

/// The result of an attempt to take a SystemLock.
struct SystemLockAttempt
{
    /// Empty if the lock was not taken.
    std::unique_ptr<SystemLock> lock;
    /// Whether somebody else holds the lock. If this is false and `lock` is empty, the system cannot provide
    /// the lock.
    bool isTakenElsewhere = false;
};

/// Tries to take the lock of `file` without waiting. It can be held only once, even within one process. On
/// Linux it is identified by the path. On Windows it is identified by the file name without the folder, so
/// that users with different temporary folders exclude each other. May be called from any thread.
SystemLockAttempt trySystemLock(const QString &file);

/// Returns whether any process, including this one, holds the lock of `file`. Does not take it. May be called
/// from any thread.
bool isSystemLockTaken(const QString &file);
