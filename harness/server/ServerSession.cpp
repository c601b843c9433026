#include "harness/server/ServerSession.h"

#include "harness/BuildPaths.h"

namespace {
constexpr int serverGraceMs = 500;
} // namespace

bool ServerSession::start(const QString &folder, quint16 port, const QStringList &faults)
{
    QStringList command{BuildPaths::firmwareServer(), QStringLiteral("--port"), QString::number(port),
                        QStringLiteral("--root"), folder};
    for (const QString &fault : faults)
        command << QStringLiteral("--fault") << fault;
    m_port = m_server.start(command) ? m_server.waitForPort() : quint16(0);
    return m_port != 0;
}

void ServerSession::end()
{
    m_server.end(serverGraceMs);
    m_port = 0;
}
