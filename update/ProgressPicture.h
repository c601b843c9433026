#pragma once

/// The interface to the picture of the device on the flashing tab. May be called from any thread; no call
/// blocks.
class ProgressPicture
{
public:
    virtual ~ProgressPicture() = default;

    /// Sets the progress level, in percent.
    virtual void setPictureLevel(double percent) = 0;
    virtual void repaintPicture() = 0;
};
