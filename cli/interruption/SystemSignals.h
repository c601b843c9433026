#pragma once

#include <functional>

/// Calls a function for each request of the system to end the program: SIGINT, SIGTERM and SIGHUP, or the
/// console's events on Windows. The function is called on another thread, so that requests arrive even while
/// the main thread hangs. At most one object may exist at a time. Requests after its destruction are ignored.
class SystemSignals
{
public:
    explicit SystemSignals(std::function<void()> requested);
    /// Waits until a call of the function that is running has returned.
    ~SystemSignals();
    SystemSignals(const SystemSignals &) = delete;
    SystemSignals &operator=(const SystemSignals &) = delete;

private:
    /// Makes the system call notify() for each request. Called once.
    static void watchSystem();
    static void notify();
};
