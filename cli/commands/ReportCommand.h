#pragma once

#include "cli/output/ExitCode.h"

class CommandContext;

/// Writes a report for support.
ExitCode runReportCommand(CommandContext &context);
