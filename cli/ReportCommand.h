#pragma once

#include "cli/ExitCode.h"

class CommandContext;

/// Writes a report for support.
ExitCode runReportCommand(CommandContext &context);
