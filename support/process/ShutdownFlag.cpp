#include "support/process/ShutdownFlag.h"

#include <QCoreApplication>
#include <QThread>

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
    // Objects connect to the signal in the middle of a run. To emit it on another thread meanwhile is a data
    // race inside Qt.
    if (thread() == QThread::currentThread())
        emit raised();
    else
        QMetaObject::invokeMethod(this, &ShutdownFlag::raised, Qt::QueuedConnection);
}

ShutdownFlag::ShutdownFlag()
{
    // The first use may be on another thread.
    if (const QCoreApplication *application = QCoreApplication::instance())
        moveToThread(application->thread());
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
