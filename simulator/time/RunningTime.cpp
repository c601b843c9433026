#include "simulator/time/RunningTime.h"

#include <chrono>
#include <utility>

namespace {
constexpr int tickMs = 10;
/// The maximum that one gap adds to the running time. A thread that only sleeps is scheduled within this time
/// even on a busy machine.
constexpr qint64 mostPerGapMs = 50;
/// A longer gap means that the machine was paused, not only busy.
constexpr qint64 pauseMs = 500;
} // namespace

RunningClock::RunningClock()
{
    m_sinceTick.start();
    m_thread = std::thread([this] { tick(); });
}

RunningClock::~RunningClock()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ending = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

void RunningClock::tick()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_wake.wait_for(lock, std::chrono::milliseconds(tickMs), [this] { return m_ending; })) {
        m_beforeTickMs += sinceTickMs();
        m_pausedMs += pauseSinceTickMs();
        m_sinceTick.restart();
    }
}

qint64 RunningClock::sinceTickMs() const
{
    return qMin(m_sinceTick.elapsed(), mostPerGapMs);
}

qint64 RunningClock::pauseSinceTickMs() const
{
    const qint64 gap = m_sinceTick.elapsed();
    return gap >= pauseMs ? gap : 0;
}

qint64 RunningClock::nowMs() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_beforeTickMs + sinceTickMs();
}

qint64 RunningClock::pausedMs() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_pausedMs + pauseSinceTickMs();
}

const RunningClock &RunningClock::ofThisProcess()
{
    // Never deleted: threads that are still waiting when main() returns may use it.
    static const RunningClock &clock = *new RunningClock;
    return clock;
}

RunningTimer::RunningTimer(const RunningClock &clock) : m_clock(clock)
{
    restart();
}

qint64 RunningTimer::restart()
{
    const qint64 now = m_clock.nowMs();
    m_pausedBeforeMs = m_clock.pausedMs();
    return now - std::exchange(m_startMs, now);
}
