#pragma once

#include "harness/process/ChildProcess.h"

/// A running firmware server. The destructor ends it.
class ServerSession
{
public:
    /// Serves `folder` on a loopback port; with port 0 the system chooses one. `faults` are fault
    /// descriptions of the server.
    bool start(const QString &folder, quint16 port, const QStringList &faults = {});
    void end();

    quint16 port() const { return m_port; }
    qint64 processId() const { return m_server.processId(); }
    QString errorText() const { return m_server.errorText(); }

private:
    ChildProcess m_server;
    quint16 m_port = 0;
};
