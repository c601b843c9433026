#pragma once

#include <functional>

/// Calls a function for each request of the system to end the program: SIGINT, SIGTERM and SIGHUP, or the
/// console's events on Windows. It is called on a thread of its own, so that requests arrive while the main
/// thread hangs. At most one object exists at a time; requests that come later are ignored.
class SystemSignals
{
public:
    explicit SystemSignals(std::function<void()> requested);
    /// Waits for a call that is running.
    ~SystemSignals();
    SystemSignals(const SystemSignals &) = delete;
    SystemSignals &operator=(const SystemSignals &) = delete;

private:
    /// Has each request of the system call notify(). Called once.
    static void watchSystem();
    static void notify();
};
