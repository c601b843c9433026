#pragma once

#include "simulator/time/RunningTime.h"
#include "support/Clock.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

/// A clock whose sleeps really take 2 ms at most, so that what happens on other threads can happen.
/// Each sleep first calls the hook, on the sleeping thread; a test looks at the worker's objects
/// there. Its real time is running time, so that a pause of the machine is no time-out.
class QuickClock : public Clock
{
public:
    qint64 nowMs() const override { return (onlySleepsCount ? 0 : m_timer.elapsed()) + m_skippedMs; }
    bool sleepMs(int milliseconds) override
    {
        ++sleeps;
        if (onSleep)
            onSleep();
        if (m_leaving)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(std::min(milliseconds, 2)));
        if (sleepsCount)
            m_skippedMs += milliseconds;
        return !m_leaving;
    }
    bool isShuttingDown() const override { return m_leaving; }
    void leave() { m_leaving = true; }

    /// Whether nowMs() advances by what was slept (and running time, too) or by running time only.
    bool sleepsCount = false;
    /// With sleepsCount: running time does not count, so that rounds can be counted on a busy machine.
    bool onlySleepsCount = false;
    std::function<void()> onSleep;
    std::atomic<int> sleeps{0};

private:
    RunningTimer m_timer;
    std::atomic<qint64> m_skippedMs{0};
    std::atomic<bool> m_leaving{false};
};
