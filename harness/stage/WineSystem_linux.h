#pragma once

#include "harness/stage/TargetSystem.h"

/// The version of Windows that is reported to a program.
enum class WindowsVersion { Windows7, Windows10 };

/// The manager of the windows on the program's display, which frames, places and closes them.
enum class WindowFrames {
    /// Wine itself, on a display without a window manager. With the other value Wine would wait for a window
    /// manager's answer for each window.
    ByWine,
    /// The window manager of the user's display. It cannot close or raise windows that are framed by Wine.
    ByWindowManager
};

/// Returns Windows under Wine, for a program that was cross-built in the build folder `build`. The files in
/// that folder's subfolder "beside" are put beside the program.
///
/// Each of these systems has its own WinePrefix.
std::unique_ptr<TargetSystem> makeWineSystem(const QString &build, WindowsVersion version,
                                             WindowFrames frames = WindowFrames::ByWine);

/// Returns a Windows 10 whose program under test is the one without a window.
std::unique_ptr<TargetSystem> makeWineCommandLineSystem(const QString &build);

/// Returns the folder that is drive C: of a system returned by makeWineSystem().
QString systemDriveOf(const TargetSystem &wineSystem);
