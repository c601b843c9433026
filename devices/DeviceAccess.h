#pragma once

#include <QString>

#include <functional>

/// Detects that the system does not let this program open a connected device, and returns one hint on how to
/// solve it. GUI thread only.
class DeviceAccess
{
public:
    /// Returns the device file of a connected device that this user may not open, or an empty text.
    using FindRefusedFile = std::function<QString()>;

    explicit DeviceAccess(FindRefusedFile findRefusedFile);

    /// Checks devices that have been connected for a while. Returns a hint for the user, or an empty text.
    /// Only one hint is returned in the lifetime of this object.
    QString checkSettled();
    /// Like checkSettled(), but one of the devices may just have been connected. The system grants access a
    /// moment after a device appears, so a device counts only if two checks in a row find it refused.
    QString check();

private:
    FindRefusedFile m_findRefusedFile;
    QString m_refusedBefore;
    bool m_reported = false;
};
