#pragma once

#include "cli/output/ExitCode.h"

class CommandContext;

/// Checks a firmware manifest for the maker who wrote it, and shows one line for each finding.
ExitCode runManifestCommand(CommandContext &context);
