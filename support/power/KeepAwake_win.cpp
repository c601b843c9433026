#include "support/power/KeepAwake.h"

#include "support/power/WindowsPower.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>

#include <windows.h>

namespace {

/// Refuses the end of the session. Without a refusal Windows shows the reason only for a moment.
class SessionEndRefusal : public QAbstractNativeEventFilter
{
public:
    bool nativeEventFilter(const QByteArray & /*eventType*/, void *message, long *result) override
    {
        if (static_cast<MSG *>(message)->message != WM_QUERYENDSESSION)
            return false;
        *result = FALSE;
        return true;
    }
};

/// The main window's shutdown block, shared by all objects that keep the system awake. GUI thread only, like
/// the system's functions for the window.
class ShutdownBlock
{
public:
    static ShutdownBlock &instance()
    {
        // Never destroyed: at the end of the process the destructor of Qt's event filter would use the event
        // dispatcher, which no longer exists, and the process would crash or hang.
        static auto *block = new ShutdownBlock;
        return *block;
    }

    void add(quintptr window, const QString &reason)
    {
        if (m_count++ > 0)
            return;
        QCoreApplication::instance()->installNativeEventFilter(&m_refusal);
        WindowsPower::instance().blockShutdown(window, reason);
    }
    void remove(quintptr window)
    {
        if (--m_count > 0)
            return;
        WindowsPower::instance().unblockShutdown(window);
        QCoreApplication::instance()->removeNativeEventFilter(&m_refusal);
    }

private:
    int m_count = 0;
    SessionEndRefusal m_refusal;
};

/// Runs `action` on the GUI thread: at once if that is the calling thread, otherwise from its event loop.
template <typename Action>
void onGuiThread(Action action)
{
    if (QCoreApplication *application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, action);
}

} // namespace

class KeepAwake::Hold
{
public:
    Hold(const QString &reason, quintptr window, const Log &log) : m_reason(reason), m_window(window)
    {
        quint32 error = 0;
        m_request = WindowsPower::instance().request(reason, error);
        if (!m_request && log)
            log(QStringLiteral("The system may go to sleep during the update: %1").arg(error));
    }
    ~Hold() { Q_ASSERT(!m_request); }
    Q_DISABLE_COPY(Hold)

    void release()
    {
        if (m_request)
            WindowsPower::instance().release(m_request);
        m_request = nullptr;
    }

    // Called in either order if a worker thread creates the object and the GUI thread destroys it.
    void block()
    {
        if (!m_isOver && m_window != 0) {
            ShutdownBlock::instance().add(m_window, m_reason);
            m_blocks = true;
        }
    }
    void unblock()
    {
        m_isOver = true;
        if (m_blocks)
            ShutdownBlock::instance().remove(m_window);
        m_blocks = false;
    }

private:
    const QString m_reason;
    const quintptr m_window;
    void *m_request = nullptr;
    // Used on the GUI thread only.
    bool m_blocks = false;
    bool m_isOver = false;
};

KeepAwake::KeepAwake(const QString &reason, quintptr window, const Log &log)
    : m_hold(std::make_shared<Hold>(reason, window, log))
{
    onGuiThread([hold = m_hold] { hold->block(); });
}

KeepAwake::~KeepAwake()
{
    m_hold->release();
    onGuiThread([hold = m_hold] { hold->unblock(); });
}
