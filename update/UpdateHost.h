#pragma once

#include "update/ProgressPicture.h"

/// What the workflow needs of the main widget beyond its reports. Every operation is called from
/// the update's thread.
class UpdateHost : public ProgressPicture
{
public:
    /// Sends the chosen device into its bootloader; returns whether the report was written.
    virtual bool sendUpdateMode() = 0;
    /// Hands an IAP device over to the IAP panel; returns false when there is no panel.
    virtual bool startIapPanel() = 0;
};
