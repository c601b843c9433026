#pragma once

#include <QString>

/// How the program was started. At most one of the flags is set; with neither, it is normal mode.
struct LaunchOptions
{
    bool isZN58Mode = false;
    bool isTessilonixMode = false;
    /// The model that a companion program wants updated; empty outside Tessilonix mode.
    QString wantedModelName;

    /// Reduced interface, the update starts by itself, and the run ends in the blocking loop.
    bool isAutomatic() const { return isZN58Mode || isTessilonixMode; }
};
