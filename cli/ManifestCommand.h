#pragma once

#include "cli/ExitCode.h"

class CommandContext;

/// Checks a firmware manifest for its maker: one line for each finding.
ExitCode runManifestCommand(CommandContext &context);
