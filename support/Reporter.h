#pragma once

#include "support/BilingualText.h"

#include <QString>

/// How work tells the user what it does. The main widget is the one reporter of the program; it
/// passes every call on through its signals, so each may be made from any thread and none blocks.
/// A test passes a recorder.
class Reporter
{
public:
    virtual ~Reporter() = default;

    /// Appends one line to the log window and to "UPDLog.txt".
    virtual void log(const QString &line) = 0;
    /// Whether logged lines still wait to be shown and written. Who passes on what may come without
    /// end, such as a tool's output, reads on only when they do not: lines on their way to the
    /// window use memory, and keep it from everything else.
    virtual bool isCatchingUp() const { return false; }
    /// Shows `title`, in the current language, as the status title.
    virtual void setStateTitle(const BilingualText &title) = 0;
    /// Sets the progress bar, in percent.
    virtual void setProgress(int percent) = 0;
    /// Enables or disables the start button.
    virtual void enableStartButton(bool enable) = 0;
    /// Starts or stops the once-a-second look at the buses.
    virtual void runDeviceCheck(bool run) = 0;
};
