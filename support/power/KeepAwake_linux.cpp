#include "support/power/KeepAwake.h"

#include "support/power/DbusLibrary_linux.h"

#include <unistd.h>

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

/// An error of the D-Bus library.
class BusError
{
public:
    explicit BusError(const DbusLibrary &dbus) : m_dbus(dbus) { dbus.error_init(&m_error); }
    ~BusError() { m_dbus.error_free(&m_error); }
    BusError(const BusError &) = delete;
    BusError &operator=(const BusError &) = delete;

    DBusError *get() { return &m_error; }
    QString text() const { return QString::fromUtf8(m_error.message); }

private:
    const DbusLibrary &m_dbus;
    DBusError m_error{};
};

using Message = std::unique_ptr<DBusMessage, decltype(&dbus_message_unref)>;
using PendingCall = std::unique_ptr<DBusPendingCall, decltype(&dbus_pending_call_unref)>;

/// A connection to the system bus that nobody else uses.
class SystemBus
{
public:
    /// Blocks without a limit.
    SystemBus(const DbusLibrary &dbus, BusError &error)
        : m_dbus(dbus),
          m_connection(dbus.bus_get_private(DBUS_BUS_SYSTEM, error.get()))
    {
        // By default the loss of the bus would end the program.
        if (m_connection)
            m_dbus.connection_set_exit_on_disconnect(m_connection, FALSE);
    }
    ~SystemBus()
    {
        if (!m_connection)
            return;
        m_dbus.connection_close(m_connection);
        m_dbus.connection_unref(m_connection);
    }
    SystemBus(const SystemBus &) = delete;
    SystemBus &operator=(const SystemBus &) = delete;

    bool isConnected() const { return m_connection != nullptr; }

    PendingCall send(const Message &message)
    {
        DBusPendingCall *call = nullptr;
        m_dbus.connection_send_with_reply(m_connection, message.get(), &call, DBUS_TIMEOUT_INFINITE);
        return {call, m_dbus.pending_call_unref};
    }
    /// Waits at most `limit` for the next thing to happen. Returns whether the bus is still there.
    bool wait(milliseconds limit)
    {
        return m_dbus.connection_read_write_dispatch(m_connection, static_cast<int>(limit.count())) != FALSE;
    }

private:
    const DbusLibrary &m_dbus;
    DBusConnection *m_connection;
};

Message inhibitCall(const DbusLibrary &dbus, const QString &reason)
{
    Message call(dbus.message_new_method_call("org.freedesktop.login1", "/org/freedesktop/login1",
                                              "org.freedesktop.login1.Manager", "Inhibit"),
                 dbus.message_unref);
    const QByteArray text = reason.toUtf8();
    const char *what = "sleep:shutdown";
    const char *who = "Quillmarsh";
    const char *why = text.constData();
    const char *mode = "block";
    dbus.message_append_args(call.get(), DBUS_TYPE_STRING, &what, DBUS_TYPE_STRING, &who, DBUS_TYPE_STRING,
                             &why, DBUS_TYPE_STRING, &mode, DBUS_TYPE_INVALID);
    return call;
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
    /// Owns `descriptor` from now on: the login manager holds its lock as long as the descriptor is open.
    void keep(int descriptor)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_descriptor = descriptor;
        if (m_released)
            closeDescriptor();
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
        closeDescriptor();
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
        const DbusLibrary &dbus = DbusLibrary::instance();
        if (!dbus.errorText().isEmpty()) {
            fail(dbus.errorText());
            return;
        }
        // What a closed connection means for the process is the program's own decision.
        dbus.connection_set_change_sigpipe(FALSE);
        BusError error(dbus);
        SystemBus bus(dbus, error);
        if (bus.isConnected())
            askOver(dbus, bus, reason);
        else
            fail(error.text());
    }

private:
    void askOver(const DbusLibrary &dbus, SystemBus &bus, const QString &reason)
    {
        const PendingCall call = bus.send(inhibitCall(dbus, reason));
        const auto start = std::chrono::steady_clock::now();
        while (call && !dbus.pending_call_get_completed(call.get())) {
            const bool isLate = std::chrono::steady_clock::now() - start >= answerLimit;
            if (isReleased() || isLate) {
                dbus.pending_call_cancel(call.get());
                fail(QStringLiteral("no answer from the login manager"));
                return;
            }
            bus.wait(checkInterval);
        }
        if (call)
            take(dbus, Message(dbus.pending_call_steal_reply(call.get()), dbus.message_unref));
        else
            fail(QStringLiteral("the system bus closed the connection"));
    }
    void take(const DbusLibrary &dbus, const Message &answer)
    {
        BusError error(dbus);
        int descriptor = -1;
        if (dbus.set_error_from_message(error.get(), answer.get()) != FALSE ||
            dbus.message_get_args(answer.get(), error.get(), DBUS_TYPE_UNIX_FD, &descriptor,
                                  DBUS_TYPE_INVALID) == FALSE)
            fail(error.text());
        else
            keep(descriptor);
    }
    void closeDescriptor()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
        m_descriptor = -1;
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_end;
    const Log m_log;
    int m_descriptor = -1;
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
