#pragma once

#include <QObject>

#include <atomic>
#include <condition_variable>
#include <mutex>

/// Whether the program is leaving. Every endless loop, wait and nested event loop watches the one
/// instance, so that a confirmed close ends the process at once in whatever state it is.
///
/// All operations may be called from any thread. raised() is emitted on the thread that raises the
/// flag; connect it queued (or with a receiver on another thread) to leave a local event loop.
class ShutdownFlag : public QObject
{
    Q_OBJECT

public:
    static ShutdownFlag &instance();

    bool isRaised() const { return m_raised; }
    /// Raises the flag and wakes every waiter. Raising it twice does nothing more.
    void raise();
    /// Sleeps for `milliseconds`, but no longer than until the flag is raised. Returns whether the
    /// time was slept through.
    bool sleepUnlessRaised(int milliseconds);
    /// Lowers the flag again. Only a program that runs many sessions in one process (a test) needs it.
    void lower();

signals:
    void raised();

private:
    ShutdownFlag() = default;

    std::atomic<bool> m_raised{false};
    std::mutex m_mutex;
    std::condition_variable m_wake;
};
