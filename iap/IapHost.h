#pragma once

#include "support/Reporter.h"
#include "support/UpdateLock.h"

#include <QString>

class IAPUpDate;

/// The chosen device, as far as the IAP panel looks at it.
struct IapDevice
{
    /// Whether it is programmed through the IAP programmer.
    bool isIap = false;
    quint32 productId = 0;
    quint32 vendorId = 0;
};

/// What the IAP panel needs of the main widget. Everything is called on the GUI thread.
class IapHost : public Reporter
{
public:
    virtual IapDevice chosenIapDevice() const = 0;
    /// Path of the firmware file that is to be programmed.
    virtual QString updateFile() const = 0;
    /// Connects the panel's sigAppendLog, at the start of its life, to what shows and writes the line
    /// at once: not to log(), where other lines may stand in a queue.
    virtual void connectLogOf(IAPUpDate *panel) = 0;
    /// The level of the progress picture, in percent.
    virtual void setPictureLevel(double percent) = 0;
    /// The connection monitor, and the start button with it.
    virtual void StartCheckConnectTimer() = 0;
    virtual void StopCheckConnectTimer() = 0;
    /// Unticks the check box that shows the panel.
    virtual void untickIapBox() = 0;
    /// A start that was asked for is over: the programmer has ended, or could not be started.
    virtual void iapRunEnded() = 0;
    /// Held while the programmer is at work.
    virtual UpdateLock &updateLock() = 0;
};
