#pragma once

/// What the flashing page needs of the main widget: it alone decides what local-file mode means.
class LocalFileHost
{
public:
    virtual ~LocalFileHost() = default;

    /// The hidden gesture was made: from now on, and for the rest of the run, the firmware is the
    /// local file that the user chooses. May be called again in that mode. GUI thread.
    virtual void enterLocalFileMode() = 0;
};
