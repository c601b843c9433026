#pragma once

#include <QString>

/// The launch mode. At most one of the flags is set; neither is set in normal mode.
struct LaunchOptions
{
    bool isZN58Mode = false;
    bool isTessilonixMode = false;
    /// The model that a companion program wants updated; empty outside Tessilonix mode.
    QString wantedModelName;

    /// Returns whether the mode is one with a reduced interface, in which the update starts by itself and
    /// ends in the blocking loop.
    bool isAutomatic() const { return isZN58Mode || isTessilonixMode; }
};
