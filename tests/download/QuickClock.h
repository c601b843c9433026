#pragma once

#include "simulator/time/RunningTime.h"
#include "support/Clock.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

/// A clock whose sleeps take at most 2 ms, so that other threads can run. Each sleep first calls the hook on
/// the sleeping thread, in which a test can examine the worker's objects. The clock uses running time, so
/// that a pause of the machine does not cause a timeout.
class QuickClock : public Clock
{
public:
    qint64 nowMs() const override { return (onlySleepsCount ? 0 : m_timer.elapsed()) + m_skippedMs; }
    bool sleepMs(int milliseconds) override
    {
        ++sleeps;
        if (onSleep)
            onSleep();
        if (m_isShuttingDown)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(std::min(milliseconds, 2)));
        if (sleepsCount)
            m_skippedMs += milliseconds;
        return !m_isShuttingDown;
    }
    bool isShuttingDown() const override { return m_isShuttingDown; }
    void shutDown() { m_isShuttingDown = true; }

    /// Whether nowMs() advances by the requested sleeps in addition to running time.
    bool sleepsCount = false;
    /// With sleepsCount: whether running time does not count at all, so that rounds can be counted on a busy
    /// machine.
    bool onlySleepsCount = false;
    std::function<void()> onSleep;
    std::atomic<int> sleeps{0};

private:
    RunningTimer m_timer;
    std::atomic<qint64> m_skippedMs{0};
    std::atomic<bool> m_isShuttingDown{false};
};
