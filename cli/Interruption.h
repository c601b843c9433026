#pragma once

#include <QElapsedTimer>
#include <QObject>

class EventSink;
class UpdateSession;

/// Decides what Ctrl+C and its kin do: end the program at once, unless a device is being written. Then the
/// first one is only answered, and a second one within five seconds ends the flasher. Main thread.
class Interruption : public QObject
{
public:
    /// Both must outlive this object.
    Interruption(const UpdateSession &session, EventSink &sink);

    /// Handles one request to end.
    void request();
    /// Returns whether a flasher was ended on request.
    bool hasStoppedWriting() const { return m_stoppedWriting; }

private:
    const UpdateSession &m_session;
    EventSink &m_sink;
    /// Since the first request during the writing; invalid before.
    QElapsedTimer m_sinceFirst;
    bool m_stoppedWriting = false;
};
