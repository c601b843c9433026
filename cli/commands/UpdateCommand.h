#pragma once

#include "cli/output/ExitCode.h"

class CommandContext;

/// Updates a device, or with --repeat one device after the other until the program is told to end.
ExitCode runUpdateCommand(CommandContext &context);
