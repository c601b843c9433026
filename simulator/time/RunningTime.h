#pragma once

#include <QElapsedTimer>

#include <condition_variable>
#include <mutex>
#include <thread>

/// How long a test waits for an event that must happen. The wait ends with the event, so this only determines
/// how quickly a failing test fails.
constexpr int eventLimitMs = 60000;

/// A monotonic clock that stops while its process cannot run because the process or the machine is stopped. A
/// thread of its own ticks every few milliseconds; only a part of a longer gap between two ticks counts. All
/// functions may be called from any thread.
class RunningClock
{
public:
    RunningClock();
    ~RunningClock();
    RunningClock(const RunningClock &) = delete;
    RunningClock &operator=(const RunningClock &) = delete;

    /// Returns the milliseconds in which the process could run, since the clock was created.
    qint64 nowMs() const;
    /// Returns the total milliseconds of pauses of at least half a second, since the clock was created.
    qint64 pausedMs() const;

    /// Returns the default clock of timers. It is created when it is first used and exists until the process
    /// ends.
    static const RunningClock &ofThisProcess();

private:
    void tick();
    /// Return what the time since the last tick adds to the two sums. The caller must hold the lock.
    qint64 sinceTickMs() const;
    qint64 pauseSinceTickMs() const;

    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_ending = false;
    QElapsedTimer m_sinceTick;
    qint64 m_beforeTickMs = 0;
    qint64 m_pausedMs = 0;
    std::thread m_thread;
};

/// Measures time with a RunningClock, from its construction on.
class RunningTimer
{
public:
    explicit RunningTimer(const RunningClock &clock = RunningClock::ofThisProcess());

    /// Restarts at zero and returns the milliseconds elapsed until then.
    qint64 restart();
    /// Returns the elapsed milliseconds in which the process could run.
    qint64 elapsed() const { return m_clock.nowMs() - m_startMs; }
    bool hasExpired(qint64 limitMs) const { return elapsed() >= limitMs; }
    /// Returns the total milliseconds of pauses of at least half a second.
    qint64 pausedMs() const { return m_clock.pausedMs() - m_pausedBeforeMs; }

private:
    const RunningClock &m_clock;
    qint64 m_startMs = 0;
    qint64 m_pausedBeforeMs = 0;
};

/// Calls `wait` until it returns true or `limitMs` of running time have passed, but at least once. `wait`
/// must block for at most the given milliseconds. This makes the blocking waits of Qt, whose limits include
/// pauses, independent of pauses.
template <typename Wait>
bool waitInShortSteps(const Wait &wait, int limitMs)
{
    constexpr int stepMs = 50;
    const RunningTimer waited;
    do {
        if (wait(static_cast<int>(qBound<qint64>(0, limitMs - waited.elapsed(), stepMs))))
            return true;
    } while (!waited.hasExpired(limitMs));
    return false;
}
