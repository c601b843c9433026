#pragma once

#include "simulator/time/RunningTime.h"

#include <QProcess>
#include <QThread>

/// Evaluates `condition` every `stepMs` until it is true or `limitMs` of running time have passed. Returns
/// whether it was true. Runs no event loop. The condition is evaluated at least once, and once more at the
/// end.
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

/// Waits until `process` has ended, for at most `limitMs` of running time. Returns whether it has.
inline bool waitForEnd(QProcess &process, int limitMs = eventLimitMs)
{
    return waitInShortSteps(
        [&](int ms) { return process.state() == QProcess::NotRunning || process.waitForFinished(ms); },
        limitMs);
}

/// Waits until `process` has started, for at most `limitMs` of running time. Returns whether it has; it may
/// have ended since.
inline bool waitForStart(QProcess &process, int limitMs = eventLimitMs)
{
    waitInShortSteps(
        [&](int ms) { return process.state() != QProcess::Starting || process.waitForStarted(ms); }, limitMs);
    return process.state() != QProcess::Starting && process.error() != QProcess::FailedToStart;
}
