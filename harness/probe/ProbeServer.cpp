#include "harness/probe/ProbeServer.h"

#include <QSaveFile>

#include <cstdio>

ProbeServer::ProbeServer(const QString &portFile)
    : m_server([this](const QJsonObject &request, const QByteArray &) { return m_handler.answer(request); })
{
    const quint16 port = m_server.listen();
    QSaveFile file(portFile);
    const bool ready = port != 0 && file.open(QIODevice::WriteOnly) &&
                       file.write(QByteArray::number(port)) > 0 && file.commit();
    if (!ready) // Not through Qt, because the program may have installed a message handler.
        std::fputs("quillprobe: no port, or its file cannot be written\n", stderr);
}
