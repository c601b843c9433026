#pragma once

#include "cli/ExitCode.h"

class CommandContext;

/// Shows whether everything that an update needs is there: one line for each thing, with the remedy.
ExitCode runCheckCommand(CommandContext &context);
