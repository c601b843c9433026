#pragma once

#include <QtGlobal>

/// The seam to time: what waits and measures takes a Clock, so that a test need not wait.
///
/// real() sleeps on the calling thread and is cut short when the program leaves; it may be used
/// from any thread.
class Clock
{
public:
    virtual ~Clock() = default;

    /// Milliseconds of a steady clock with an arbitrary start.
    virtual qint64 nowMs() const = 0;
    /// Sleeps; returns false when the program is leaving, and then at once.
    virtual bool sleepMs(int milliseconds) = 0;
    /// Whether the program is leaving: no loop may go on then.
    virtual bool isLeaving() const = 0;

    static Clock &real();
};
