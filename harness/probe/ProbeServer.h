#pragma once

#include "harness/probe/ProbeRequestHandler.h"
#include "simulator/jsonlines/JsonLineServer.h"

#include <QObject>

/// Answers the probe's requests on a loopback port that the system chooses. The constructor writes the port
/// as text to a file.
class ProbeServer : public QObject
{
public:
    explicit ProbeServer(const QString &portFile);

    /// Ends all connections. Must be called while the application object exists.
    void stop() { m_server.stop(); }

private:
    ProbeRequestHandler m_handler;
    JsonLineServer m_server;
};
