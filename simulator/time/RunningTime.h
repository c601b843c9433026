#pragma once

#include <QElapsedTimer>

#include <condition_variable>
#include <mutex>
#include <thread>

/// How long a test waits for something that has to happen. A wait ends as soon as it happens, so this only
/// decides how soon a test fails that fails anyway.
constexpr int eventLimitMs = 60000;

/// A steady clock that stops while its process cannot run: while the process is stopped, or the machine
/// stalls. A thread of its own ticks every few milliseconds; of a longer gap between two ticks only a
/// fraction counts. Time never goes backwards. All functions may be called from any thread.
class RunningClock
{
public:
    RunningClock();
    ~RunningClock();
    RunningClock(const RunningClock &) = delete;
    RunningClock &operator=(const RunningClock &) = delete;

    /// Milliseconds in which the process was able to run, since the clock was made.
    qint64 nowMs() const;
    /// Milliseconds of the pauses of half a second and more, since the clock was made.
    qint64 stoodStillMs() const;

    /// The clock that timers use unless they are given another. It is made at the first use and ends with
    /// the process.
    static const RunningClock &ofThisProcess();

private:
    void tick();
    /// What the time since the last tick adds to the two sums; both need the lock.
    qint64 sinceTickMs() const;
    qint64 pauseSinceTickMs() const;

    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_ending = false;
    QElapsedTimer m_sinceTick;
    qint64 m_beforeTickMs = 0;
    qint64 m_stoodStillMs = 0;
    std::thread m_thread;
};

/// Measures time on a RunningClock. Starts when it is made.
class RunningTimer
{
public:
    explicit RunningTimer(const RunningClock &clock = RunningClock::ofThisProcess());

    /// Starts again from zero; returns the milliseconds until then.
    qint64 restart();
    /// Milliseconds in which the process was able to run.
    qint64 elapsed() const { return m_clock.nowMs() - m_startMs; }
    bool hasExpired(qint64 limitMs) const { return elapsed() >= limitMs; }
    /// Milliseconds of pauses of half a second and more.
    qint64 stoodStillMs() const { return m_clock.stoodStillMs() - m_stoodStillBeforeMs; }

private:
    const RunningClock &m_clock;
    qint64 m_startMs = 0;
    qint64 m_stoodStillBeforeMs = 0;
};

/// Calls `wait`, which blocks for at most the milliseconds that it is given and returns whether it is
/// done, until it is or `limitMs` of running time have passed. It is called at least once. Turns the
/// blocking waits of Qt, whose limits count pauses, into waits whose limits do not.
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
