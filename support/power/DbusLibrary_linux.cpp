#include "support/power/DbusLibrary_linux.h"

#include <QLibrary>

namespace {

/// The version of the interface that the functions belong to.
constexpr int interfaceVersion = 3;

template <typename Function>
bool resolve(QLibrary &library, Function &function, const char *name)
{
    function = reinterpret_cast<Function>(library.resolve(name));
    return function != nullptr;
}

} // namespace

const DbusLibrary &DbusLibrary::instance()
{
    static const DbusLibrary library;
    return library;
}

DbusLibrary::DbusLibrary()
{
    QLibrary library(QStringLiteral("dbus-1"), interfaceVersion);
    const bool isComplete =
        resolve(library, error_init, "dbus_error_init") && resolve(library, error_free, "dbus_error_free") &&
        resolve(library, set_error_from_message, "dbus_set_error_from_message") &&
        resolve(library, bus_get_private, "dbus_bus_get_private") &&
        resolve(library, connection_set_change_sigpipe, "dbus_connection_set_change_sigpipe") &&
        resolve(library, connection_set_exit_on_disconnect, "dbus_connection_set_exit_on_disconnect") &&
        resolve(library, connection_send_with_reply, "dbus_connection_send_with_reply") &&
        resolve(library, connection_read_write_dispatch, "dbus_connection_read_write_dispatch") &&
        resolve(library, connection_close, "dbus_connection_close") &&
        resolve(library, connection_unref, "dbus_connection_unref") &&
        resolve(library, message_new_method_call, "dbus_message_new_method_call") &&
        resolve(library, message_append_args, "dbus_message_append_args") &&
        resolve(library, message_get_args, "dbus_message_get_args") &&
        resolve(library, message_unref, "dbus_message_unref") &&
        resolve(library, pending_call_get_completed, "dbus_pending_call_get_completed") &&
        resolve(library, pending_call_steal_reply, "dbus_pending_call_steal_reply") &&
        resolve(library, pending_call_cancel, "dbus_pending_call_cancel") &&
        resolve(library, pending_call_unref, "dbus_pending_call_unref");
    if (!isComplete)
        m_errorText = library.errorString();
}
