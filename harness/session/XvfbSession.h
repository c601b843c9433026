#pragma once

#include "harness/process/ChildProcess.h"

#include <QSize>

/// A separate X display. The display server chooses its number itself, so that several sessions can start at
/// the same time. The destructor ends it.
class XvfbSession
{
public:
    bool start(const QSize &screen = QSize(1280, 900), int depth = 24);
    /// Uses the display of this process instead of starting one, so that people can watch. Returns false if
    /// it has none.
    bool useExistingDisplay();

    /// Returns the value for the environment variable DISPLAY; empty before a successful start.
    QString display() const { return m_display; }
    /// Returns the value for the environment variable XAUTHORITY, which is needed because the program has a
    /// home folder of its own. Empty for a display that was started here, which needs no cookie.
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
