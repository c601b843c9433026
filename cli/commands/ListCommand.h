#pragma once

#include "cli/output/ExitCode.h"

class CommandContext;

/// Shows the connected devices. With --watch, goes on to show devices that are connected and disconnected
/// until the program is told to end.
ExitCode runListCommand(CommandContext &context);
