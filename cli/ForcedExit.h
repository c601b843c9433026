#pragma once

#include <functional>

/// Ends the process when something that cannot be interrupted holds it, such as a name lookup inside Qt,
/// which the application object waits for. May be used from any thread.
namespace LastResort {

/// Sets what is still done before the process is ended that way; it returns the exit code, and must not use
/// this namespace. Replaces what was set before, which is not called afterwards. Does not return if the
/// process is being ended already.
void setLastWords(std::function<int()> lastWords);

/// Ends the process in about `limitMs` in which it was able to run, unless it has ended by then. Each call
/// counts by itself.
void begin(int limitMs);

} // namespace LastResort
