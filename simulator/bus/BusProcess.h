#pragma once

#include "simulator/bus/BusClient.h"

#include <QProcess>
#include <QTemporaryDir>

/// A bus controller as a child of this process, which it does not outlive, and a client of it.
class BusProcess
{
public:
    ~BusProcess();

    /// `controller` is the executable, `description` the JSON text. It is started under
    /// umockdev-wrapper where there is one. False when it is not ready within 30 s; see errorText().
    bool start(const QString &controller, const QByteArray &description);
    QString errorText() const { return m_error; }
    /// "127.0.0.1:PORT"
    QString address() const { return m_address; }
    qint64 processId() const { return m_process.processId(); }
    BusClient &client() { return m_client; }
    /// Closes its input, upon which it ends; kills it when it does not. True when it ended well.
    bool stop();

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    BusClient m_client;
    QString m_address;
    QString m_error;
};
