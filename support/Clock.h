#pragma once

#include <QtGlobal>

/// The interface to time. Code that waits or measures takes a Clock, so that its tests need not wait.
///
/// real() sleeps on the calling thread and wakes up when the program shuts down. It may be used from any
/// thread.
class Clock
{
public:
    virtual ~Clock() = default;

    /// Returns the milliseconds of a monotonic clock with an arbitrary start.
    virtual qint64 nowMs() const = 0;
    /// Sleeps. Returns false, without sleeping on, once the program is shutting down.
    virtual bool sleepMs(int milliseconds) = 0;
    /// Returns whether the program is shutting down. Loops must end then.
    virtual bool isShuttingDown() const = 0;

    static Clock &real();
};
