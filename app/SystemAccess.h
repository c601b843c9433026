#pragma once

#include "devices/ConnectionState.h"
#include "driver/DeviceAccess.h"
#include "driver/DriverLog.h"

#include <QString>
#include <QVector>

#include <functional>
#include <utility>

class QTimer;
class TextWindow;

/// Whether the system lets the program reach its devices: the driver check at the start, and a look
/// at the device files whenever a device is connected. GUI thread.
class SystemAccess
{
public:
    using Check = std::function<void(DriverLog &log)>;

    SystemAccess();

    /// Runs the driver check. It tells its lines directly, so that they stand together and before
    /// those that wait in the queue, which it keeps back; `ticks` do nothing meanwhile.
    void checkAtStart(const QString &applicationDir, TextWindow &window, QTimer &ticks);
    /// The same for any check.
    void runAlone(const Check &check, TextWindow &window, QTimer &ticks);
    /// Takes a line over, to be delivered when the check has ended; false when none is running.
    bool keeps(TextWindow *window, const QString &line);

    /// After each look at the buses.
    void checkDevice(ConnectionState state, TextWindow &window);

private:
    DeviceAccess m_deviceAccess;
    bool m_checking = false;
    QVector<std::pair<TextWindow *, QString>> m_kept;
};
