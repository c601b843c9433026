#pragma once

#include "simulator/bench/ChildProcess.h"

#include <QString>
#include <QStringList>

/// nginx with a configuration of its own, as a plain child. The destructor ends it.
class Nginx
{
public:
    /// Serves the files below `root` at `port` on `address`. `through` goes before the command: what
    /// starts it somewhere else.
    bool start(const QString &root, quint16 port, const QString &address = QStringLiteral("127.0.0.1"),
               const QStringList &through = {});
    QString errorText() const { return m_server.errorText(); }

private:
    QTemporaryDir m_folder;
    ChildProcess m_server;
};
