#include "support/process/AfterToolWait.h"

#include "support/process/ShutdownFlag.h"
#include "support/process/ToolRun.h"

#include <utility>

AfterToolWait::AfterToolWait(std::function<void()> action) : m_action(std::move(action)) {}

bool AfterToolWait::postpone()
{
    if (!isWaitingForTool())
        return false;
    if (!std::exchange(m_isPostponed, true))
        callAfterWait();
    return true;
}

void AfterToolWait::runNow()
{
    if (std::exchange(m_isPostponed, false) && !ShutdownFlag::instance().isRaised())
        m_action();
}

void AfterToolWait::runFromEventLoop()
{
    // Another wait may have begun meanwhile, and this may be its event loop.
    if (isWaitingForTool())
        callAfterWait();
    else
        runNow();
}

void AfterToolWait::callAfterWait()
{
    callAfterToolWait(this, [this] { runFromEventLoop(); });
}
