#pragma once

/// The interface through which the flashing page uses the main widget.
class LocalFileHost
{
public:
    virtual ~LocalFileHost() = default;

    /// Called when the user made the hidden gesture. Until the program ends, the firmware is the local file
    /// that the user chooses. May be called again in that mode. GUI thread.
    virtual void enterLocalFileMode() = 0;
};
