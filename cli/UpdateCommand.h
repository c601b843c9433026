#pragma once

#include "cli/ExitCode.h"

class CommandContext;

/// Updates a device, or with --repeat one after the other. Ends when the update has ended or the program is
/// told to.
ExitCode runUpdateCommand(CommandContext &context);
