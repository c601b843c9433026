#pragma once

#include <QString>

#include <functional>
#include <memory>

/// Keeps the system awake during its lifetime: it neither goes to sleep by itself nor shuts down without
/// asking the user. Used while a device is written, because half-written firmware makes a device unusable.
///
/// On Linux it asks the login manager over the system bus, on Windows the system. Neither the constructor nor
/// the destructor waits for an answer. If the request fails, one line is logged and the update goes on. May
/// be created and destroyed on any thread; needs the application object.
class KeepAwake
{
public:
    /// Receives one line if the system cannot be kept awake. Called at most once, usually on another thread,
    /// and never after the destructor.
    using Log = std::function<void(const QString &line)>;

    /// The system shows `reason` to a user who tries to shut it down; Windows also shows the title of
    /// `window`, the native id of the main window, or 0. The window must belong to the GUI thread and exist
    /// until that thread has handled the destructor's request.
    KeepAwake(const QString &reason, quintptr window, const Log &log);
    ~KeepAwake();
    KeepAwake(const KeepAwake &) = delete;
    KeepAwake &operator=(const KeepAwake &) = delete;

private:
    class Hold;
    std::shared_ptr<Hold> m_hold;
};
