#pragma once

#include <QString>

/// Receives the driver check's messages. Called on the GUI thread; lines appear in the order of the calls.
class DriverLog
{
public:
    virtual ~DriverLog() = default;

    /// Appends a line to the log window only.
    virtual void showLine(const QString &line) = 0;
    /// Appends a line to the log window and to "UPDLog.txt".
    virtual void logLine(const QString &line) = 0;
};
