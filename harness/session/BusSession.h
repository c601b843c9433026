#pragma once

#include "harness/process/ChildProcess.h"
#include "harness/process/PlainHost.h"
#include "simulator/bus/BusClient.h"
#include "simulator/time/RunningTime.h"

/// A simulated bus, and the program under test on it. The bus outlives the program: the destructor
/// kills a program that still runs, and then asks the controller to end. One program at a time.
class BusSession : public ProgramHost
{
public:
    ~BusSession() override;

    /// Starts the controller of this platform on a bus description.
    bool start(const QString &descriptionFile);
    /// Starts another controller that speaks the same protocol.
    bool startController(const QStringList &command);
    /// The variables that put a program onto the bus, by name.
    const QJsonObject &environment() const { return m_busEnvironment; }

    bool run(const Launch &launch) override;
    State programState() override;
    void killProgram() override;
    QString errorText() const override;
    /// The id of the program's process; 0 before the first.
    qint64 programId() const { return m_program.processId(); }

    /// All that a controller can be asked for; the functions below are the part of it that most need.
    BusClient &client() { return m_client; }
    /// Everything that the controller tells; empty without an answer.
    QJsonObject state() { return m_client.state(); }
    /// The fields of one device; empty when there is none of that key.
    QJsonObject device(const QString &key) { return m_client.device(key); }
    /// Waits until the device is in `state`: "application", "bootloader" or "absent".
    bool waitForDevice(const QString &key, const QString &state, int limitMs = eventLimitMs);
    bool plug(const QString &key) { return m_client.plug(key); }
    bool plugBootloader(const QString &key) { return m_client.plugBootloader(key); }
    bool unplug(const QString &key) { return m_client.unplug(key); }
    /// `changes` holds "onReport", "onReset" or "writes" as a bus description does.
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
