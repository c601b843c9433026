#pragma once

#include "cli/commands/WaitDecision.h"
#include "devices/ConnectionMonitor.h"

class CommandContext;

/// Waits for a device that can be updated. Main thread; waits in an event loop.
class DeviceWait
{
public:
    using End = WaitDecision::End;
    struct Result
    {
        End end = End::TimedOut;
        MonitorOutcome found;
    };

    /// `context` must outlive this object.
    explicit DeviceWait(CommandContext &context) : m_context(context) {}

    /// Waits for at most `limitMs`, or without a limit if it is negative. Looks at the bus at least once.
    Result wait(qint64 limitMs);
    /// Waits until no device is connected that could be updated. Returns false if interrupted.
    /// With `restarts`, the device is restarting: it leaves the bus and comes back before the user
    /// disconnects it.
    bool waitForDisconnection(bool restarts);

private:
    bool isConnected();

    CommandContext &m_context;
};
