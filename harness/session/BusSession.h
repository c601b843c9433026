#pragma once

#include "harness/process/ChildProcess.h"
#include "harness/process/PlainHost.h"
#include "simulator/bus/BusClient.h"
#include "simulator/time/RunningTime.h"

/// A simulated bus with the program under test on it, one program at a time. The bus outlives the program:
/// the destructor kills a program that is still running and then ends the controller.
class BusSession : public ProgramHost
{
public:
    ~BusSession() override;

    /// Starts the controller of this platform on a bus description.
    bool start(const QString &descriptionFile);
    /// Starts another controller with the same protocol.
    bool startController(const QStringList &command);
    /// Returns the environment variables with which a program sees the bus, by name.
    const QJsonObject &environment() const { return m_busEnvironment; }

    bool run(const Launch &launch) override;
    State programState() override;
    void killProgram() override;
    QString errorText() const override;
    /// Returns the id of the program's process; 0 before the first start.
    qint64 programId() const { return m_program.processId(); }

    /// Returns the client with all requests to the controller. The functions below call the most frequent
    /// ones.
    BusClient &client() { return m_client; }
    /// Returns the whole state of the bus; empty if there is no answer.
    QJsonObject state() { return m_client.state(); }
    /// Returns the fields of one device; empty if there is no device with that key.
    QJsonObject device(const QString &key) { return m_client.device(key); }
    /// Waits until the device is in `state`: "application", "bootloader" or "absent".
    bool waitForDevice(const QString &key, const QString &state, int limitMs = eventLimitMs);
    bool plug(const QString &key) { return m_client.plug(key); }
    bool plugBootloader(const QString &key) { return m_client.plugBootloader(key); }
    bool unplug(const QString &key) { return m_client.unplug(key); }
    /// Changes "onReport", "onReset" or "writes" of a device; `changes` has the form of a bus description.
    bool setReportAnswer(const QString &key, const QJsonObject &changes)
    {
        return m_client.setReportAnswer(key, changes);
    }
    /// Writes the bytes that were burned into the device to a file.
    bool saveImage(const QString &key, const QString &path) { return m_client.saveImage(key, path); }

private:
    ChildProcess m_controller;
    QJsonObject m_busEnvironment;
    PlainHost m_program;
    BusClient m_client;
    QString m_error;
};
