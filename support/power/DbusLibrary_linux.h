#pragma once

#include <dbus/dbus.h>

#include <QString>

/// The functions of the D-Bus library (libdbus-1) that the program calls, by their names without "dbus_". The
/// library is loaded at the first use: loaded with the program, it and what it depends on would take a fifth
/// of the time that quillmarsh-cli needs to start. May be used from any thread.
class DbusLibrary
{
public:
    static const DbusLibrary &instance();

    /// Returns why the library cannot be used; empty if it can. Otherwise nothing below may be called.
    QString errorText() const { return m_errorText; }

    decltype(&dbus_error_init) error_init = nullptr;
    decltype(&dbus_error_free) error_free = nullptr;
    decltype(&dbus_set_error_from_message) set_error_from_message = nullptr;
    decltype(&dbus_bus_get_private) bus_get_private = nullptr;
    decltype(&dbus_connection_set_change_sigpipe) connection_set_change_sigpipe = nullptr;
    decltype(&dbus_connection_set_exit_on_disconnect) connection_set_exit_on_disconnect = nullptr;
    decltype(&dbus_connection_send_with_reply) connection_send_with_reply = nullptr;
    decltype(&dbus_connection_read_write_dispatch) connection_read_write_dispatch = nullptr;
    decltype(&dbus_connection_close) connection_close = nullptr;
    decltype(&dbus_connection_unref) connection_unref = nullptr;
    decltype(&dbus_message_new_method_call) message_new_method_call = nullptr;
    decltype(&dbus_message_append_args) message_append_args = nullptr;
    decltype(&dbus_message_get_args) message_get_args = nullptr;
    decltype(&dbus_message_unref) message_unref = nullptr;
    decltype(&dbus_pending_call_get_completed) pending_call_get_completed = nullptr;
    decltype(&dbus_pending_call_steal_reply) pending_call_steal_reply = nullptr;
    decltype(&dbus_pending_call_cancel) pending_call_cancel = nullptr;
    decltype(&dbus_pending_call_unref) pending_call_unref = nullptr;

private:
    DbusLibrary();

    QString m_errorText;
};
