#pragma once

#include "simulator/time/RunningTime.h"

#include <QCoreApplication>
#include <QEventLoop>

/// Processes this thread's events until `condition` holds or `limitMs` of running time have passed;
/// returns whether it held. The condition is asked at least once, and once more at the end.
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
