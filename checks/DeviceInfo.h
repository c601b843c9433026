#pragma once

#include <QString>

/// A connected device that the model table knows.
struct DeviceInfo
{
    enum class State {
        Ready,
        InBootloader,       ///< Its model is not known.
        NeedsIapProgrammer, ///< Ready, and updated through the IAP programmer.
        NoPermission,       ///< The user may not open it.
        SwitchedOff,        ///< The control list does not switch its model on.
    };

    /// Empty for a device in its bootloader.
    QString model;
    quint32 vendorId = 0;
    quint32 productId = 0;
    /// Bus and ports from the root hub on, as in "1-2.3"; empty if the system does not provide them.
    QString position;
    State state = State::Ready;
    /// False if the device was disconnected.
    bool connected = true;

    bool operator==(const DeviceInfo &other) const
    {
        return model == other.model && vendorId == other.vendorId && productId == other.productId &&
               position == other.position && state == other.state && connected == other.connected;
    }
};
