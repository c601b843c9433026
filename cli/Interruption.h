#pragma once

#include <QElapsedTimer>

class EventSink;
class UpdateSession;

/// Decides what Ctrl+C and its kin do: end the program at once, unless a device is being written. Then the
/// first one is only answered, and a second one within five seconds ends the flasher.
class Interruption
{
public:
    /// Both must outlive this object.
    Interruption(const UpdateSession &session, EventSink &sink);

    /// Handles one request to end. May be called from any thread, but not from two at once.
    void request();
    /// Has everything end, by the last resort if need be.
    static void leave();

private:
    const UpdateSession &m_session;
    EventSink &m_sink;
    /// Since the first request during the writing; invalid before.
    QElapsedTimer m_sinceFirst;
};
