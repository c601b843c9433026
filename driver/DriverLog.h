#pragma once

#include <QString>

/// Where the driver check tells what it does. It calls on the GUI thread, and what it tells appears
/// in the order of the calls.
class DriverLog
{
public:
    virtual ~DriverLog() = default;

    /// A line for the log window only.
    virtual void shown(const QString &line) = 0;
    /// A line for the log window and for "UPDLog.txt".
    virtual void logged(const QString &line) = 0;
};
