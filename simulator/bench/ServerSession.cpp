#include "simulator/bench/ServerSession.h"

#include "simulator/bench/BenchPaths.h"

namespace {
constexpr int readyLimitMs = 15000;
constexpr int graceMs = 500;
} // namespace

bool ServerSession::start(const QString &folder, quint16 port, const QStringList &faults)
{
    QStringList command{BenchPaths::firmwareServer(), QStringLiteral("--port"), QString::number(port),
                        QStringLiteral("--root"), folder};
    for (const QString &fault : faults)
        command << QStringLiteral("--fault") << fault;
    return startServer(command);
}

bool ServerSession::startServer(const QStringList &command)
{
    m_port = m_server.start(command) ? m_server.waitForPort(readyLimitMs) : quint16(0);
    return m_port != 0;
}

void ServerSession::end()
{
    m_server.end(graceMs);
    m_port = 0;
}
