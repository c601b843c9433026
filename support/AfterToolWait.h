#pragma once

#include <QObject>

#include <functional>

/// Remembers a request that arrives while its thread is waiting for a tool, and acts on it once when the wait
/// is over: a request is never lost, and never runs in the middle of what needs the tool. Used on one thread.
class AfterToolWait : public QObject
{
public:
    explicit AfterToolWait(std::function<void()> action);

    /// Returns false if the thread is not waiting for a tool: the caller acts at once. Otherwise returns true
    /// and runs the action from the event loop after the outermost wait has ended, once however often this
    /// was called. The action is dropped when the program leaves or this object is destroyed.
    bool postpone();
    /// Runs the action now if it is still to run. Call outside a wait.
    void runNow();

private:
    void runFromEventLoop();
    void callAfterWait();

    const std::function<void()> m_action;
    bool m_isPostponed = false;
};
