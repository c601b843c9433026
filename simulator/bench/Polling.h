#pragma once

#include <QElapsedTimer>
#include <QThread>

/// Asks `condition` every `stepMs` until it holds or `limitMs` have passed; returns whether it
/// held. Runs no event loop. The condition is asked at least once, and once more at the end.
template <typename Condition>
bool pollUntil(const Condition &condition, int limitMs, unsigned long stepMs = 10)
{
    QElapsedTimer waited;
    waited.start();
    while (!condition()) {
        if (waited.elapsed() >= limitMs)
            return condition();
        QThread::msleep(stepMs);
    }
    return true;
}
