#pragma once

#include <QByteArray>

/// The standard streams of the program. No call but flush() blocks, whether anybody reads or not. May be used
/// from any thread.
namespace Output {

/// Sends Qt's messages to standard error if `verbose`, and nowhere otherwise.
void install(bool verbose);

void write(const QByteArray &bytes);
void writeError(const QByteArray &bytes);

/// Waits until both streams are written, for at most about `limitMs`.
void flush(int limitMs = 1000);

} // namespace Output
