#pragma once

/// The picture of the device on the flashing tab, as the flasher runner sees it. Callable from any
/// thread; nothing blocks.
class ProgressPicture
{
public:
    virtual ~ProgressPicture() = default;

    /// Announces a progress level in percent.
    virtual void setPictureLevel(double percent) = 0;
    virtual void repaintPicture() = 0;
};
