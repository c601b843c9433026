#pragma once

#include "harness/session/BusSession.h"
#include "harness/session/FirmwareRoot.h"
#include "harness/session/ServerSession.h"
#include "harness/stage/StagedProgram.h"
#include "simulator/time/RunningTime.h"

#include <QJsonObject>
#include <QList>
#include <QStringList>

/// What an update without a window meets: devices on a simulated bus, a firmware server on the port that the
/// program was built for, and quillmarsh-cli in a folder of its own with stand-in tools beside it. There is
/// no display. Change what a case needs changed between the constructor and the first start.
class CliScenario
{
public:
    /// Prepares a server with an image for `model`, a bus with that device, and a control list with it.
    explicit CliScenario(const QString &model);
    CliScenario(const CliScenario &) = delete;
    CliScenario &operator=(const CliScenario &) = delete;

    /// What stands on the bus; the model's device at first.
    QList<QJsonObject> devices;
    /// The file of a report whose bus is shown in their place; empty for none.
    QString report;
    /// Whether there is a firmware server, and what is wrong with it.
    bool withServer = true;
    QStringList serverFaults;

    FirmwareRoot firmware;
    StagedProgram program;
    ServerSession server;
    BusSession bus;

    const QString &model() const { return m_model; }
    /// Returns the bytes that the server has for the model.
    const QByteArray &image() const { return m_image; }

    /// Starts the program, and before the first start the server and the bus. Returns false if something
    /// could not be started; errorText() says what.
    bool start(const QStringList &arguments);
    /// Starts the program and waits for its end. Returns its exit code; none if it was ended by a signal, did
    /// not end in time or could not be started.
    std::optional<int> run(const QStringList &arguments, int limitMs = 2 * eventLimitMs);

    /// Returns the objects that the program has written with --json, whole lines only. A line that is no
    /// JSON object is an empty object.
    QList<QJsonObject> events() const;
    /// Returns those that are called so.
    QList<QJsonObject> events(const QString &name) const;
    /// Waits for an event that has all the fields of `wanted`.
    bool waitForEvent(const QJsonObject &wanted, int limitMs = eventLimitMs) const;

    /// Returns the bytes that were burned into the device of this key, the model's at first.
    QByteArray burned(const QString &key = QString());
    /// Returns the files that the program left in its temporary, working or home folder, or beside itself.
    QStringList filesLeft() const;

    QString errorText() const { return m_error; }

private:
    bool startSurroundings();
    bool fail(const QString &what, const QString &why);

    QString m_model;
    QByteArray m_image;
    QString m_error;
    bool m_started = false;
};
