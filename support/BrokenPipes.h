#pragma once

/// Makes a write to a pipe without a reader fail, where it would otherwise end the process.
void ignoreBrokenPipes();
