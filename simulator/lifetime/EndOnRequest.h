#pragma once

#include <memory>

/// Ends the application's event loop with 0 when the parent process closes the standard input or dies, and,
/// on systems with signals, on SIGTERM, SIGINT and SIGHUP. If that happens before the loop runs, the loop
/// ends at once.
///
/// Create it on the main thread, after the application and before other threads, because those must not
/// receive the signals. It must exist as long as the event loop runs.
class EndOnRequest
{
public:
    EndOnRequest();
    ~EndOnRequest();
    EndOnRequest(const EndOnRequest &) = delete;
    EndOnRequest &operator=(const EndOnRequest &) = delete;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
