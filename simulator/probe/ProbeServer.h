#pragma once

#include "simulator/probe/ProbeDialogue.h"

#include <QObject>
#include <QTcpServer>

class QTcpSocket;

/// Listens on a loopback port that the system chooses and answers requests, one JSON object a line
/// each way. The port is written, as text, to the file named on construction.
class ProbeServer : public QObject
{
public:
    explicit ProbeServer(const QString &portFile);

    /// Ends all connections. To be called while the application object still stands.
    void stop();

private:
    void accept();
    void readRequests(QTcpSocket &connection);

    QTcpServer m_server;
    ProbeDialogue m_dialogue;
};
