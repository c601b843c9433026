#include "support/KeepAwake.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace {

using std::chrono::milliseconds;

/// How long the login manager may take to answer. Until it has, the system is not kept awake.
constexpr milliseconds answerLimit(30000);
constexpr milliseconds checkInterval(10);
/// How long the destructor waits for the asking thread, so that the thread rarely outlives the application.
/// The limit is reached only if the system bus does not answer: that call cannot be interrupted.
constexpr milliseconds endLimit(200);

QString failureLine(const QString &reason)
{
    return QStringLiteral("The system may go to sleep during the update: ") + reason;
}

QDBusMessage inhibitCall(const QString &reason)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
    call << QStringLiteral("sleep:shutdown") << QStringLiteral("Quillmarsh") << reason
         << QStringLiteral("block");
    return call;
}

QString nextConnectionName()
{
    static std::atomic<int> count = 0;
    return QStringLiteral("quillmarsh-keep-awake-%1").arg(++count);
}

} // namespace

/// The state that the asking thread and the KeepAwake share; either of them may end first.
class KeepAwake::Hold
{
public:
    explicit Hold(Log log) : m_log(std::move(log)) {}

    bool isReleased() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_released;
    }
    /// Keeps `descriptor`: the login manager holds its lock as long as the descriptor or a copy of it is
    /// open.
    void keep(const QDBusUnixFileDescriptor &descriptor)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_released)
            m_descriptor = descriptor;
    }
    void fail(const QString &reason)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_released && m_log)
            m_log(failureLine(reason));
    }
    void release()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_released = true;
        m_descriptor = QDBusUnixFileDescriptor();
    }

    void markEnded()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ended = true;
        m_end.notify_all();
    }
    void waitForEnd()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_end.wait_for(lock, endLimit, [this] { return m_ended; });
    }

    /// Asks the login manager, on the calling thread.
    void ask(const QString &reason)
    {
        const QString name = nextConnectionName();
        askOver(QDBusConnection::connectToBus(QDBusConnection::SystemBus, name), reason);
        QDBusConnection::disconnectFromBus(name);
    }

private:
    void askOver(const QDBusConnection &bus, const QString &reason)
    {
        if (!bus.isConnected()) {
            fail(bus.lastError().message());
            return;
        }
        const QDBusPendingCall call =
            bus.asyncCall(inhibitCall(reason), static_cast<int>(answerLimit.count()));
        while (!call.isFinished()) {
            if (isReleased())
                return;
            std::this_thread::sleep_for(checkInterval);
        }
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply(call);
        if (reply.isError())
            fail(reply.error().message());
        else
            keep(reply.value());
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_end;
    const Log m_log;
    QDBusUnixFileDescriptor m_descriptor;
    bool m_released = false;
    bool m_ended = false;
};

KeepAwake::KeepAwake(const QString &reason, quintptr /*window*/, const Log &log)
    : m_hold(std::make_shared<Hold>(log))
{
    // Connecting to a bus blocks without a limit.
    std::thread([hold = m_hold, reason] {
        hold->ask(reason);
        hold->markEnded();
    }).detach();
}

KeepAwake::~KeepAwake()
{
    m_hold->release();
    m_hold->waitForEnd();
}
