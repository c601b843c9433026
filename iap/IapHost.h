#pragma once

#include "iap/IapDevice.h"
#include "session/UpdateSession.h"
#include "support/log/Reporter.h"

#include <QString>

class IAPUpDate;

/// The interface through which the IAP panel uses the main widget. Called on the GUI thread.
class IapHost : public Reporter
{
public:
    virtual IapDevice chosenIapDevice() const = 0;
    /// Returns the path of the firmware file to program.
    virtual QString updateFile() const = 0;
    /// Checks whether the user's firmware file may be programmed. Returns None, or the reason after reporting
    /// it. May run a local event loop.
    virtual UpdateReason checkUpdateFile() = 0;
    /// Connects the panel's sigAppendLog directly to the log window. The panel calls this in its constructor.
    /// Its lines must not use log(), which would queue them behind others.
    virtual void connectLogOf(IAPUpDate *panel) = 0;
    /// Sets the level of the progress picture, in percent.
    virtual void setPictureLevel(double percent) = 0;
    /// Starts the connection monitor and enables the start button.
    virtual void StartCheckConnectTimer() = 0;
    /// Stops the connection monitor and disables the start button.
    virtual void StopCheckConnectTimer() = 0;
    /// Unticks the check box that shows the panel.
    virtual void untickIapBox() = 0;
    /// Returns the owner of the updates' state, to which the panel reports its runs.
    virtual UpdateSession &session() = 0;
};
