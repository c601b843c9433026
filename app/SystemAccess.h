#pragma once

#include "devices/ConnectionState.h"
#include "devices/DeviceAccess.h"
#include "driver/DriverLog.h"

#include <QString>
#include <QVector>

#include <functional>
#include <utility>

class QTimer;
class TextWindow;

/// Checks that the system lets the program open its devices: runs the driver check at start-up and looks at
/// the device files whenever a device is connected. GUI thread.
class SystemAccess
{
public:
    using Check = std::function<void(DriverLog &log)>;

    SystemAccess();

    /// Runs the driver check. Its lines go to `window` directly; queued lines that arrive meanwhile are held
    /// back until it has ended, so that the check's lines stay together. The monitor's timer `ticks` is
    /// blocked meanwhile.
    void checkAtStart(const QString &applicationDir, TextWindow &window, QTimer &ticks);
    /// Like checkAtStart(), but runs `check` instead of the driver check.
    void runAlone(const Check &check, TextWindow &window, QTimer &ticks);
    /// Stores the line until the running check has ended and returns true. Without a running check, returns
    /// false and stores nothing.
    bool holdBack(TextWindow *window, const QString &line);

    /// Checks the permissions of the device files if a device is connected. Call after each monitor tick.
    void checkDevice(ConnectionState state, TextWindow &window);

private:
    DeviceAccess m_deviceAccess;
    bool m_checking = false;
    QVector<std::pair<TextWindow *, QString>> m_heldBack;
};
