#include "support/ShutdownFlag.h"

#include <chrono>

ShutdownFlag &ShutdownFlag::instance()
{
    static ShutdownFlag flag;
    return flag;
}

void ShutdownFlag::raise()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_raised)
            return;
        m_raised = true;
    }
    m_wake.notify_all();
    emit raised();
}

bool ShutdownFlag::sleepUnlessRaised(int milliseconds)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return !m_wake.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] { return isRaised(); });
}

void ShutdownFlag::lower()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_raised = false;
}
