#pragma once

#include "simulator/bench/ChildProcess.h"
#include "simulator/bench/JsonLineClient.h"
#include "simulator/bench/PlainHost.h"

/// A simulated bus, and the program under test on it. The bus outlives the program: the destructor
/// kills a program that still runs, and then asks the controller to end. One program at a time.
class BusSession : public ProgramHost
{
public:
    ~BusSession() override;

    /// Starts the platform's controller on a bus description.
    bool start(const QString &descriptionFile);
    /// Starts another controller that speaks the same protocol.
    bool startController(const QStringList &command);

    bool run(const Launch &launch) override;
    State programState() override;
    void killProgram() override;
    QString errorText() const override;

    /// Everything that the controller tells; empty without an answer.
    QJsonObject state();
    /// The fields of one device; empty when there is none of that key.
    QJsonObject device(const QString &key);
    /// Waits until the device is in `state`: "application", "bootloader" or "absent".
    bool waitForDevice(const QString &key, const QString &state, int limitMs);
    bool plug(const QString &key);
    bool plugBootloader(const QString &key);
    bool unplug(const QString &key);
    /// `changes` holds "onReport", "onReset" or "writes" as a bus description does.
    bool setReportAnswer(const QString &key, const QJsonObject &changes);
    /// Writes the bytes that were burned into the device to a file.
    bool saveImage(const QString &key, const QString &path);

private:
    QJsonObject request(const QJsonObject &request);
    bool operate(const char *operation, QJsonObject fields = {});

    ChildProcess m_controller;
    /// What puts a program onto the bus.
    QJsonObject m_busEnvironment;
    PlainHost m_program;
    JsonLineClient m_client;
    QString m_error;
};
