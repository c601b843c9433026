#pragma once

#include "simulator/time/RunningTime.h"

#include <QCoreApplication>
#include <QEventLoop>

/// Processes this thread's events until `condition` is true or `limitMs` of running time have passed. Returns
/// whether it was true. The condition is evaluated at least once, and once more at the end.
template <typename Condition>
bool processEventsUntil(const Condition &condition, int limitMs = eventLimitMs)
{
    const RunningTimer waited;
    while (!condition()) {
        if (waited.hasExpired(limitMs))
            return condition();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}
