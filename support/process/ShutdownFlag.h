#pragma once

#include <QObject>

#include <atomic>
#include <condition_variable>
#include <mutex>

/// A flag that is raised when the program shuts down. All endless loops, waits and nested event loops watch
/// its single instance, so that a confirmed close ends the process at once in any state.
///
/// All operations may be called from any thread. raised() is emitted on the application's thread: at once if
/// that raises the flag, otherwise from its event loop. Use a queued connection (or a receiver on another
/// thread) to quit a local event loop.
class ShutdownFlag : public QObject
{
    Q_OBJECT

public:
    static ShutdownFlag &instance();

    bool isRaised() const { return m_raised; }
    /// Raises the flag and wakes all waiting threads. Raising it again has no effect.
    void raise();
    /// Sleeps for `milliseconds`, or until the flag is raised. Returns whether the whole time has passed.
    bool sleepUnlessRaised(int milliseconds);
    /// Lowers the flag again. For tests, which start and shut down the program several times in one process.
    void lower();

signals:
    void raised();

private:
    ShutdownFlag();

    std::atomic<bool> m_raised{false};
    std::mutex m_mutex;
    std::condition_variable m_wake;
};
