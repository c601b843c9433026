#pragma once

#include <QByteArray>

/// The debug stream and standard output. Both go through writers that never block the caller.
namespace Diagnostics {

/// Sends the toolkit's messages, as UTF-8 lines, to standard error from now on.
void install();

/// Writes to standard output. Any thread.
void writeStandardOutput(const QByteArray &bytes);

/// Waits until both streams are written out, at most about `limitMs`.
void flush(int limitMs);

} // namespace Diagnostics
