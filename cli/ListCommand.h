#pragma once

#include "cli/ExitCode.h"

class CommandContext;

/// Shows the connected devices, and with --watch those that come and go until the program is told to end.
ExitCode runListCommand(CommandContext &context);
