#pragma once

#include <QByteArray>

#include <optional>

/// What the system says of the program's standard streams.
namespace Terminal {

/// Returns whether standard input and standard output are terminals, so that a person can be asked.
bool canAsk();
/// Returns the characters in a line of the terminal at standard output; 0 if it is none.
int width();
/// Returns what was typed since the last call; nothing at the end of the input. Does not wait, except on
/// Windows, where it waits for a line, and Ctrl+C is the end of the input.
std::optional<QByteArray> typed();

} // namespace Terminal
