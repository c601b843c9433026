#pragma once

#include "harness/probe/ProbeDialogue.h"
#include "simulator/jsonlines/JsonLineServer.h"

#include <QObject>

/// Answers the probe's requests on a loopback port that the system chooses. The port is written, as text,
/// to the file named on construction.
class ProbeServer : public QObject
{
public:
    explicit ProbeServer(const QString &portFile);

    /// Ends all connections. Must be called while the application object exists.
    void stop() { m_server.stop(); }

private:
    ProbeDialogue m_dialogue;
    JsonLineServer m_server;
};
