#pragma once

#include <QString>

#include <functional>
#include <memory>

/// Keeps the system awake while this lives: it neither sleeps by itself nor shuts down without asking. For
/// the time in which a device is written, since half-written firmware leaves it unusable.
///
/// Asks the login manager on Linux, over the system bus, and Windows itself. Neither the constructor nor the
/// destructor waits for an answer. Where nobody can be asked, one line is logged and nothing else happens.
/// May be made and destroyed on any thread; needs the application object.
class KeepAwake
{
public:
    /// Is given one line if the system cannot be kept awake. Called at most once, on another thread as a
    /// rule, and never after the destructor.
    using Log = std::function<void(const QString &line)>;

    /// `reason` is shown to the user by the system, when it is asked to shut down. `window` is the native id
    /// of the program's main window, which Windows names with it; it has to belong to the GUI thread and to
    /// exist until the destructor's request has been handled there, and may be 0.
    KeepAwake(const QString &reason, quintptr window, const Log &log);
    ~KeepAwake();
    KeepAwake(const KeepAwake &) = delete;
    KeepAwake &operator=(const KeepAwake &) = delete;

private:
    class Hold;
    std::shared_ptr<Hold> m_hold;
};
