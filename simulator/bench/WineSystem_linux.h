#pragma once

#include "simulator/bench/TargetSystem.h"

/// Which Windows a program is told that it runs on.
enum class WindowsVersion { Windows7, Windows10 };

/// Windows under Wine, for a program that was cross-built in the build folder given. What that build
/// leaves in its folder "beside" is put beside the program.
///
/// Each has a Windows of its own; see WinePrefix.
std::unique_ptr<TargetSystem> makeWineSystem(const QString &build, WindowsVersion version);

/// The folder that is drive C: on the Windows that makeWineSystem() has made.
QString systemDriveOf(const TargetSystem &wineSystem);
