#pragma once

#include "support/TranslatableText.h"

#include <QString>

/// Receives progress and messages for the user. In the program this is the main widget, which forwards every
/// call through its signals. May be called from any thread; no call blocks.
class Reporter
{
public:
    virtual ~Reporter() = default;

    /// Appends one line to the log window and to "UPDLog.txt".
    virtual void log(const QString &line) = 0;
    /// Returns whether logged lines are still waiting to be shown and written. Callers that forward unbounded
    /// output must stop reading while this returns true; otherwise queued lines exhaust memory and starve the
    /// GUI.
    virtual bool isCatchingUp() const { return false; }
    /// Sets the status title, in the current language.
    virtual void setStateTitle(const TranslatableText &title) = 0;
    /// Sets the progress bar, in percent.
    virtual void setProgress(int percent) = 0;
    /// Enables or disables the start button.
    virtual void enableStartButton(bool enable) = 0;
    /// Starts or stops the connection monitor's timer.
    virtual void runDeviceCheck(bool run) = 0;
};
