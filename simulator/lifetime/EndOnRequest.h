#pragma once

#include <memory>

/// Ends the application's event loop, with 0, when whoever started this process closes its end of
/// the standard input or dies, and when the process is asked to terminate (SIGTERM, SIGINT, SIGHUP
/// where there are such). A request that comes before the loop runs ends it at once.
///
/// To be made on the main thread, after the application and before anything that starts threads:
/// those must not take the signals. It lives as long as the event loop.
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
