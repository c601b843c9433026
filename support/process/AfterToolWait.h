#pragma once

#include <QObject>

#include <functional>

/// A request that may arrive while its thread is waiting for a tool. It is then run once, after the wait: it
/// is neither lost nor run in the middle of the code that waits. Not thread-safe.
class AfterToolWait : public QObject
{
public:
    explicit AfterToolWait(std::function<void()> action);

    /// Returns false if the thread is not waiting for a tool; the caller then acts at once. Otherwise returns
    /// true and runs the action once, from the event loop after the outermost wait, however often this is
    /// called. The action is dropped when the program shuts down or this object is destroyed.
    bool postpone();
    /// Runs a postponed action now. Must not be called during a wait.
    void runNow();

private:
    void runFromEventLoop();
    void callAfterWait();

    const std::function<void()> m_action;
    bool m_isPostponed = false;
};
