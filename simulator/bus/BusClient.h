#pragma once

#include "simulator/jsonlines/JsonLineClient.h"

#include <QString>

/// A connection to a bus controller. All calls block until the answer has arrived (for at most 30 s) and need
/// no event loop. Use it on the thread that created it. After a call that returned false, errorText() returns
/// the reason.
class BusClient
{
public:
    /// Connects to the controller on this loopback port.
    bool connectTo(quint16 port);
    /// Connects to the bus on which this process runs, whose address is in the variable QUILLMARSH_SIM_BUS.
    bool connectToOwnBus();
    bool isConnected() const { return m_client.isConnected(); }
    QString errorText() const { return m_error; }

    /// Performs an operation and returns the answer. Its "ok" is false if the operation failed or the
    /// connection was lost.
    QJsonObject request(const QJsonObject &request, const QByteArray &payload = QByteArray());

    /// Returns the whole state of the bus; empty if there is no answer.
    QJsonObject state();
    /// Returns the state of a device; empty if there is no such device.
    QJsonObject device(const QString &key);
    bool plug(const QString &key);
    bool plugBootloader(const QString &key);
    bool unplug(const QString &key);
    bool burn(const QByteArray &image, const QString &key = QString());
    bool reset(const QString &key = QString());
    /// Programs a microcontroller, as an IAP programmer does.
    bool program(const QByteArray &image, const QString &key);
    /// Saves the image that was last burned into the device to a file.
    bool saveImage(const QString &key, const QString &path);
    /// Changes "onReport", "onReset" or "writes" of a device; `changes` has the form of a bus description.
    bool setReportAnswer(const QString &key, const QJsonObject &changes);
    /// Ends the controller.
    bool quit();

private:
    bool done(const char *operation, const QString &device, QJsonObject fields = {},
              const QByteArray &payload = QByteArray());

    JsonLineClient m_client;
    QString m_error;
};
