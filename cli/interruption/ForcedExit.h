#pragma once

#include <functional>

/// Ends the process by force when something that cannot be interrupted keeps it from ending, such as a name
/// lookup inside Qt, for which the application object's destructor waits. May be used from any thread.
namespace ForcedExit {

/// Sets the function that a forced exit calls before it ends the process. The function returns the exit code
/// and must not use this namespace. It replaces the one that was set before, which is not called any more.
/// Does not return if the process is being ended already.
void setFinalStep(std::function<int()> finalStep);

/// Ends the process after about `limitMs`, not counting pauses of the machine, unless it has ended by then.
/// Each call starts a limit of its own.
void schedule(int limitMs);

} // namespace ForcedExit
