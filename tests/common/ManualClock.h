#pragma once

#include "support/Clock.h"

#include <QList>

/// A clock that advances only during sleeps, which it records and which take no real time.
class ManualClock : public Clock
{
public:
    qint64 nowMs() const override { return m_now; }
    bool sleepMs(int milliseconds) override
    {
        m_sleeps.append(milliseconds);
        m_now += milliseconds;
        return !m_isShuttingDown;
    }
    bool isShuttingDown() const override { return m_isShuttingDown; }

    QList<int> sleeps() const { return m_sleeps; }
    void shutDown() { m_isShuttingDown = true; }

private:
    qint64 m_now = 0;
    QList<int> m_sleeps;
    bool m_isShuttingDown = false;
};
