#pragma once

#include <QByteArray>

/// The debug stream and standard output. Both go through writers that never block the caller.
namespace Diagnostics {

/// Sends Qt's messages to standard error from now on, as UTF-8 lines.
void install();

/// Writes to standard output. May be called from any thread.
void writeStandardOutput(const QByteArray &bytes);

/// Waits until both streams are written, for at most about `limitMs`.
void flush(int limitMs);

} // namespace Diagnostics
