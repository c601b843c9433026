#pragma once

#include "support/Clock.h"

#include <QList>

/// A clock that stands still except in sleeps, which it records and lets pass at once.
class ManualClock : public Clock
{
public:
    qint64 nowMs() const override { return m_now; }
    bool sleepMs(int milliseconds) override
    {
        m_sleeps.append(milliseconds);
        m_now += milliseconds;
        return !m_leaving;
    }
    bool isShuttingDown() const override { return m_leaving; }

    QList<int> sleeps() const { return m_sleeps; }
    void leave() { m_leaving = true; }

private:
    qint64 m_now = 0;
    QList<int> m_sleeps;
    bool m_leaving = false;
};
