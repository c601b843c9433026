#pragma once

#include "simulator/jsonlines/JsonLineClient.h"

#include <QString>

/// A connection to a bus controller. Every call blocks until the answer is there (at most 30 s)
/// and needs no event loop; use it on the thread that made it. After a call that returned false
/// errorText() tells why.
class BusClient
{
public:
    /// A controller on this loopback port.
    bool connectTo(quint16 port);
    /// The bus that this process runs on: the address in the variable QUILLMARSH_SIM_BUS.
    bool connectToOwnBus();
    bool isConnected() const { return m_client.isConnected(); }
    QString errorText() const { return m_error; }

    /// One operation. The answer's "ok" tells whether it was done; a lost connection looks the same.
    QJsonObject request(const QJsonObject &request, const QByteArray &payload = QByteArray());

    /// Everything that the controller tells; empty without an answer.
    QJsonObject state();
    /// That device's part of the state; empty when there is none.
    QJsonObject device(const QString &key);
    bool plug(const QString &key);
    bool plugBootloader(const QString &key);
    bool unplug(const QString &key);
    bool burn(const QByteArray &image, const QString &key = QString());
    bool reset(const QString &key = QString());
    /// What an IAP programmer does to a microcontroller.
    bool program(const QByteArray &image, const QString &key);
    /// Writes the bytes that were burned last into the device to a file.
    bool saveImage(const QString &key, const QString &path);
    /// `changes` holds "onReport", "onReset" or "writes" as a bus description does.
    bool setReportAnswer(const QString &key, const QJsonObject &changes);
    /// Ends the controller.
    bool quit();

private:
    bool done(const char *operation, const QString &device, QJsonObject fields = {},
              const QByteArray &payload = QByteArray());

    JsonLineClient m_client;
    QString m_error;
};
