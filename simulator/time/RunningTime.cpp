#include "simulator/time/RunningTime.h"

#include <chrono>
#include <utility>

namespace {
constexpr int tickMs = 10;
/// The most that one gap adds. A thread that only sleeps gets its turn well within this, also on a
/// machine with more work than processors.
constexpr qint64 mostPerGapMs = 50;
/// A longer gap is a pause of the machine, and not only much work.
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
        m_stoodStillMs += pauseSinceTickMs();
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

qint64 RunningClock::stoodStillMs() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_stoodStillMs + pauseSinceTickMs();
}

const RunningClock &RunningClock::ofThisProcess()
{
    // Never deleted: threads that are still waiting when main() returns may ask it.
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
    m_stoodStillBeforeMs = m_clock.stoodStillMs();
    return now - std::exchange(m_startMs, now);
}
