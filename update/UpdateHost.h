#pragma once

#include "update/ProgressPicture.h"

/// The interface through which the workflow uses the main widget, apart from its reports. Called on the
/// update's thread.
class UpdateHost : public ProgressPicture
{
public:
    /// Restarts the chosen device into its bootloader. Returns whether the report was written.
    virtual bool sendUpdateMode() = 0;
    /// Passes an IAP device to the IAP panel. Returns false if there is no panel.
    virtual bool startIapPanel() = 0;
};
