#pragma once

/// Makes a write to a pipe without a reader fail instead of ending the process.
void ignoreBrokenPipes();
