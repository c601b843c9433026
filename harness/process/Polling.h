#pragma once

#include "simulator/time/RunningTime.h"

#include <QProcess>
#include <QThread>

/// Asks `condition` every `stepMs` until it holds or `limitMs` of running time have passed; returns
/// whether it held. Runs no event loop. The condition is asked at least once, and once more at the end.
template <typename Condition>
bool pollUntil(const Condition &condition, int limitMs = eventLimitMs, unsigned long stepMs = 10)
{
    const RunningTimer waited;
    while (!condition()) {
        if (waited.hasExpired(limitMs))
            return condition();
        QThread::msleep(stepMs);
    }
    return true;
}

/// Waits until `process` has ended, at most `limitMs` of running time; returns whether it has.
inline bool waitForEnd(QProcess &process, int limitMs = eventLimitMs)
{
    return waitInShortSteps(
        [&](int ms) { return process.state() == QProcess::NotRunning || process.waitForFinished(ms); },
        limitMs);
}

/// Waits until `process` has started, at most `limitMs` of running time; returns whether it runs, or has
/// run and ended.
inline bool waitForStart(QProcess &process, int limitMs = eventLimitMs)
{
    waitInShortSteps(
        [&](int ms) { return process.state() != QProcess::Starting || process.waitForStarted(ms); }, limitMs);
    return process.state() != QProcess::Starting && process.error() != QProcess::FailedToStart;
}
