#pragma once

#include <QString>

/// What Windows offers against sleep and shutdown; a test puts its own in the place of the real one.
class WindowsPower
{
public:
    virtual ~WindowsPower() = default;

    /// Asks that the system stays awake, for the given reason. Returns what release() takes, or null with
    /// Windows' error number in `error`. Any thread.
    virtual void *request(const QString &reason, quint32 &error) = 0;
    virtual void release(void *request) = 0;

    /// Tells the user why the system should not shut down now. Only on the thread of `window`, its native id.
    virtual void blockShutdown(quintptr window, const QString &reason) = 0;
    virtual void unblockShutdown(quintptr window) = 0;

    static WindowsPower &instance();
    /// For tests: takes `power` for Windows; null ends that. Does not take ownership.
    static void setForTests(WindowsPower *power);
};
