#pragma once

#include "harness/process/ChildProcess.h"

#include <QSize>

/// A display of one's own. The display server chooses its number itself, so that any number of
/// sessions may start at once. The destructor ends it.
class XvfbSession
{
public:
    bool start(const QSize &screen = QSize(1280, 900), int depth = 24);
    /// Takes the display that this process has instead of starting one, for watching with one's
    /// own eyes. False when it has none.
    bool useExistingDisplay();

    /// For the environment variable DISPLAY; empty before a successful start.
    QString display() const { return m_display; }
    /// For the environment variable XAUTHORITY, since the program has another home folder than the person;
    /// empty for a display that was started here, which needs no cookie.
    QString authority() const { return m_authority; }
    qint64 processId() const { return m_server.processId(); }
    void end();
    QString errorText() const { return m_error; }

private:
    ChildProcess m_server;
    QString m_display;
    QString m_authority;
    QString m_error;
};
