#pragma once

#include "devices/ConnectionState.h"

#include <functional>
#include <optional>

/// Decides after each look at the bus whether the wait for a device is over.
class WaitDecision
{
public:
    enum class End {
        Found,
        TimedOut,
        ModelNeeded,        ///< A device waits in its bootloader, and its model was not named.
        SeveralBootloaders, ///< More than one device waits in its bootloader: the flasher takes any of them.
        NoAccess,           ///< The user may not open the device.
        Interrupted,
    };

    /// How many looks in a row must find a device that may not be opened before the wait ends. The system
    /// grants access shortly after a device has appeared, a busy one only after some seconds. There are two
    /// looks a second.
    static constexpr int mostRefusedLooks = 10;
    /// The same after the time limit.
    static constexpr int leastRefusedLooks = 2;

    explicit WaitDecision(bool isModelNamed) : m_isModelNamed(isModelNamed) {}

    /// Returns how the wait ends after a look that found `state`, or nothing if it goes on. `mayOpen` says
    /// whether the user may open the device that was found; it is asked only if that matters. `isLate` says
    /// that the time limit is over.
    std::optional<End> afterLook(ConnectionState state, const std::function<bool()> &mayOpen, bool isLate);

private:
    bool m_isModelNamed;
    int m_refusedLooks = 0;
};
