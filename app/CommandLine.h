#pragma once

#include "support/LaunchOptions.h"

/// Reads the launch mode from the arguments: "ZN58UpDate", or "TessilonixUpDate" and a model name.
/// Anything else is normal mode, and further arguments do not count.
LaunchOptions parseArguments(int argc, const char *const argv[]);

/// The same; but Tessilonix mode without a model name is said in a message box, after which the
/// process ends with exit code 0.
LaunchOptions parseCommandLine(int argc, const char *const argv[]);
