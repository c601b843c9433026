#pragma once

#include <QByteArray>

#include <optional>

/// The terminal at the program's standard streams.
namespace Terminal {

/// Returns whether standard input and standard output are terminals, so that the user can be asked.
bool canAsk();
/// Returns the columns of the terminal at standard output; 0 if standard output is not a terminal.
int width();
/// Reads what was typed since the last call; nothing at the end of the input. Does not wait, except on
/// Windows, where it waits for a line, and Ctrl+C is the end of the input.
std::optional<QByteArray> readTyped();

} // namespace Terminal
