#pragma once

#include <QElapsedTimer>

class EventSink;
class UpdateSession;

/// Handles requests to end the program, such as Ctrl+C. A request ends the program at once, unless a device
/// is being written: then the first request only shows a warning, and a second one within five seconds ends
/// the flasher and the program.
class Interruption
{
public:
    /// Both arguments must outlive this object.
    Interruption(const UpdateSession &session, EventSink &sink);

    /// Handles one request. May be called from any thread, but not from two at once.
    void request();
    /// Tells every wait to end, and forces the exit if something does not end in time.
    static void endProgram();

private:
    const UpdateSession &m_session;
    EventSink &m_sink;
    /// Measures the time since the first request while the device is being written; invalid before.
    QElapsedTimer m_sinceFirst;
};
