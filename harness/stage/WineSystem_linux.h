#pragma once

#include "harness/stage/TargetSystem.h"

/// Which Windows a program is told that it runs on.
enum class WindowsVersion { Windows7, Windows10 };

/// Who frames, places and closes the windows on the program's display.
enum class WindowFrames {
    /// Wine itself, on a display without a window manager: Wine would wait for its consent with every window.
    Wines,
    /// The window manager of a person's display. It cannot close or raise a window that Wine frames.
    WindowManagers
};

/// Windows under Wine, for a program that was cross-built in the build folder given. What that build
/// leaves in its folder "beside" is put beside the program.
///
/// Each has a Windows of its own; see WinePrefix.
std::unique_ptr<TargetSystem> makeWineSystem(const QString &build, WindowsVersion version,
                                             WindowFrames frames = WindowFrames::Wines);

/// The folder that is drive C: on the Windows that makeWineSystem() has made.
QString systemDriveOf(const TargetSystem &wineSystem);
