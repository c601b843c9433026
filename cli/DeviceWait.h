#pragma once

#include "devices/ConnectionMonitor.h"

#include <functional>

class CommandContext;

/// Waits for a device that an update can begin with. Main thread, whose event loop it runs.
class DeviceWait
{
public:
    enum class End {
        Found,
        NotInTime,
        ModelNeeded,        ///< A device waits in its bootloader, and nobody said which model it is.
        SeveralBootloaders, ///< More than one device waits in its bootloader: the flasher takes any of them.
        NoAccess,           ///< This user may not open the device.
        Interrupted,
    };
    struct Result
    {
        End end = End::NotInTime;
        MonitorOutcome found;
    };

    /// `context` must outlive this object.
    explicit DeviceWait(CommandContext &context) : m_context(context) {}

    /// Waits for at most `limitMs`; a negative limit is none. Looks at least once.
    Result wait(qint64 limitMs);
    /// Waits until no device is connected that an update could begin with. Returns false if interrupted.
    /// `comesBack` says that the device is restarting: it leaves, comes back, and is disconnected then.
    bool waitForDisconnection(bool comesBack);

private:
    bool isConnected();

    CommandContext &m_context;
};
