#pragma once

#include <QString>

/// The interface to Windows' functions against sleep and shutdown. Tests replace it by a fake.
class WindowsPower
{
public:
    virtual ~WindowsPower() = default;

    /// Requests that the system stays awake. Returns a handle for release(), or null with the system's error
    /// code in `error`. May be called from any thread.
    virtual void *request(const QString &reason, quint32 &error) = 0;
    virtual void release(void *request) = 0;

    /// Shows `reason` to a user who shuts the system down. `window` is a native id. Call it on the window's
    /// thread.
    virtual void blockShutdown(quintptr window, const QString &reason) = 0;
    virtual void unblockShutdown(quintptr window) = 0;

    static WindowsPower &instance();
    /// For tests: makes instance() return `power`; null restores the real one. Does not take ownership.
    static void setForTests(WindowsPower *power);
};
