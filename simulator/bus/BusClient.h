#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QTcpSocket>

#include <functional>

/// A connection to a bus controller. Every call blocks until the answer is there (at most 30 s)
/// and needs no event loop; use it on the thread that made it. After a call that returned false
/// errorText() tells why.
class BusClient
{
public:
    /// `address` is "127.0.0.1:PORT".
    bool connectTo(const QString &address);
    /// The bus that this process runs on: the address in the variable QUILLMARSH_SIM_BUS.
    bool connectToOwnBus();
    QString errorText() const { return m_error; }

    /// One operation. The answer's "ok" tells whether it was done; a lost connection looks the same.
    QJsonObject request(const QJsonObject &request, const QByteArray &payload = QByteArray());

    QJsonObject state();
    /// That device's part of the state; empty when there is none.
    QJsonObject device(const QString &key);
    QJsonObject program();
    bool run(const QString &program, const QStringList &arguments, const QJsonObject &more = {});
    bool plug(const QString &key);
    bool plugBootloader(const QString &key);
    bool unplug(const QString &key);
    bool burn(const QByteArray &image, const QString &key = QString());
    bool reset(const QString &key = QString());
    bool saveImage(const QString &key, const QString &path);
    /// `changes` holds "onReport", "onReset" or "writes" as a bus description does.
    bool setReportAnswer(const QString &key, const QJsonObject &changes);
    bool kill();
    bool quit();

    /// Asks every 10 ms until the device is in that state ("application", "bootloader", "absent").
    bool waitForState(const QString &key, const QString &state, int timeoutMs);
    bool waitForProgramEnd(int timeoutMs);

private:
    bool done(const QJsonObject &request, const QByteArray &payload = QByteArray());
    bool waitUntil(int timeoutMs, const std::function<bool()> &condition);

    QTcpSocket m_socket;
    QString m_error;
};
