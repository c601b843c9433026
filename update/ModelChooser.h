#pragma once

#include <QString>

/// Determines the model of a device that waits in its bootloader, for example by asking the user.
class ModelChooser
{
public:
    virtual ~ModelChooser() = default;

    /// Returns the name of the model, or an empty string if it is not known. May block the calling thread,
    /// which is the update's.
    virtual QString waitForChoice() = 0;
};
