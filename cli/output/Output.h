#pragma once

#include <QByteArray>

/// The standard streams of the program. Only flush() blocks; the other calls return even if nothing reads the
/// streams. May be used from any thread.
namespace Output {

/// Writes Qt's messages to standard error if `verbose`, and drops them otherwise.
void install(bool verbose);

void write(const QByteArray &bytes);
void writeError(const QByteArray &bytes);

/// Waits until both streams are written, for at most about `limitMs`.
void flush(int limitMs = 1000);

} // namespace Output
