#pragma once

#include <QString>

/// Knows, or finds out, which model a device is that waits in its bootloader.
class ModelChooser
{
public:
    virtual ~ModelChooser() = default;

    /// Returns the model's name, or an empty text if nobody says. May block the calling thread, which is the
    /// update's.
    virtual QString waitForChoice() = 0;
};
