#pragma once

#include "support/process/LaunchOptions.h"

/// Parses the launch mode: "ZN58UpDate", or "TessilonixUpDate" and a model name. Anything else is normal
/// mode. Further arguments are ignored.
LaunchOptions parseArguments(int argc, const char *const argv[]);

/// Like parseArguments(), but reports a missing model name in a message box and then ends the process with
/// exit code 0.
LaunchOptions parseCommandLine(int argc, const char *const argv[]);
