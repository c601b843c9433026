#pragma once

#include <functional>

/// Calls `requested` on the thread that calls this, from its event loop, for each request of the system to
/// end the program: SIGINT, SIGTERM and SIGHUP, or the console's events on Windows. Call it once.
void watchSystemSignals(const std::function<void()> &requested);
