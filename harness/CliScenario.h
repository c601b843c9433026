#pragma once

#include "harness/server/FirmwareRoot.h"
#include "harness/server/ServerSession.h"
#include "harness/session/BusSession.h"
#include "harness/stage/StagedProgram.h"
#include "simulator/time/RunningTime.h"

#include <QJsonObject>
#include <QList>
#include <QStringList>

/// The environment of an update without a window: devices on a simulated bus, a firmware server on the port
/// for which the program was built, and quillmarsh-cli in a folder of its own with stand-in tools beside it.
/// There is no display. A test makes its changes between the constructor and the first start.
class CliScenario
{
public:
    /// Prepares a server with an image for `model`, a bus with that device, and a control list with it. The
    /// program is that of `system`, or the one of the build, and lies in a folder whose name begins with
    /// `folderName`.
    explicit CliScenario(const QString &model, std::unique_ptr<TargetSystem> system = nullptr,
                         const QString &folderName = QString());
    CliScenario(const CliScenario &) = delete;
    CliScenario &operator=(const CliScenario &) = delete;

    /// The devices on the bus; initially the model's device.
    QList<QJsonObject> devices;
    /// The file of a report whose bus is shown in their place; empty for none.
    QString report;
    /// Whether there is a firmware server, and its faults.
    bool withServer = true;
    QStringList serverFaults;

    FirmwareRoot firmware;
    StagedProgram program;
    ServerSession server;
    BusSession bus;

    const QString &model() const { return m_model; }
    /// Returns the bytes that the server has for the model.
    const QByteArray &image() const { return m_image; }

    /// Starts the program, and before its first start the server and the bus. Returns false on failure;
    /// errorText() then returns the reason.
    bool start(const QStringList &arguments);
    /// Starts the program and waits for its end. Returns its exit code, or nothing if it could not be
    /// started, did not end in time or was ended by a signal.
    std::optional<int> run(const QStringList &arguments, int limitMs = 2 * eventLimitMs);

    /// Returns the objects that the program has written with --json, one for each complete line. A line that
    /// is not a JSON object results in an empty object.
    QList<QJsonObject> events() const;
    /// Returns the events with this name.
    QList<QJsonObject> events(const QString &name) const;
    /// Waits for an event that has all the fields of `wanted`.
    bool waitForEvent(const QJsonObject &wanted, int limitMs = eventLimitMs) const;

    /// Returns the bytes that were burned into the device with this key, by default into the model's device.
    QByteArray burned(const QString &key = QString());
    /// Returns the files that the program left in its temporary, working or home folder, or beside itself.
    QStringList filesLeft() const;

    QString errorText() const { return m_error; }

private:
    bool startServerAndBus();
    /// Returns the files in the program's temporary, working and home folder, and beside itself.
    QStringList files() const;
    bool fail(const QString &what, const QString &why);

    QString m_model;
    QByteArray m_image;
    QString m_error;
    bool m_started = false;
    /// What lay there before the first start.
    QStringList m_before;
};
