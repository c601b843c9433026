#pragma once

#include "support/Clock.h"

/// A clock that advances by `stepMs` each time it is read.
class LeapingClock : public Clock
{
public:
    explicit LeapingClock(int stepMs) : m_stepMs(stepMs) {}

    qint64 nowMs() const override { return m_now += m_stepMs; }
    bool sleepMs(int milliseconds) override
    {
        m_now += milliseconds;
        return true;
    }
    bool isShuttingDown() const override { return false; }

    /// Returns the time when it was last read.
    qint64 lastMs() const { return m_now; }

private:
    const int m_stepMs;
    mutable qint64 m_now = 0;
};

/// A clock that advances by an hour within four milliseconds.
class RacingClock : public Clock
{
public:
    qint64 nowMs() const override { return Clock::real().nowMs() * 1000000; }
    bool sleepMs(int) override { return true; }
    bool isShuttingDown() const override { return false; }
};
