#pragma once

#include "support/Clock.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QList>
#include <QThread>

#include <functional>

/// A clock whose sleeps take a few milliseconds, in which the network has its say. Its time is that of
/// the sleeps when it is fast, so that a limit is reached soon, and else the real one, so that a
/// limit is not reached on a busy machine.
class PumpingClock : public Clock
{
public:
    explicit PumpingClock(bool isFast) : m_isFast(isFast) { m_real.start(); }

    qint64 nowMs() const override { return m_isFast ? m_slept : m_real.elapsed(); }
    bool sleepMs(int milliseconds) override
    {
        sleeps.append(milliseconds);
        m_slept += milliseconds;
        QThread::msleep(3);
        QCoreApplication::processEvents();
        if (onSleep)
            onSleep();
        return !m_isLeaving;
    }
    bool isLeaving() const override { return m_isLeaving; }
    void leave() { m_isLeaving = true; }

    QList<int> sleeps;
    /// Called at the end of each sleep, on the thread that sleeps.
    std::function<void()> onSleep;

private:
    bool m_isFast;
    bool m_isLeaving = false;
    qint64 m_slept = 0;
    QElapsedTimer m_real;
};
