#pragma once

#include "cli/output/ExitCode.h"

class CommandContext;

/// Checks everything that an update needs and shows one line for each thing, with a remedy if it is missing.
ExitCode runCheckCommand(CommandContext &context);
