#pragma once

#include <QByteArray>

/// Functions for the debug stream and standard output. Both go through writers that never block the caller.
namespace Diagnostics {

/// Installs a message handler that writes Qt's messages to standard error, as UTF-8 lines.
void install();

/// Writes to standard output. May be called from any thread.
void writeStandardOutput(const QByteArray &bytes);

/// Waits until everything is written to both streams, for at most about `limitMs`.
void flush(int limitMs);

} // namespace Diagnostics
