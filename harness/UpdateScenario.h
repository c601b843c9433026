#pragma once

#include "harness/server/FirmwareRoot.h"
#include "harness/server/ServerSession.h"
#include "harness/session/BusSession.h"
#include "harness/session/XvfbSession.h"
#include "harness/stage/StagedProgram.h"
#include "harness/window/ProbeClient.h"
#include "simulator/time/RunningTime.h"

#include <QJsonObject>
#include <QList>
#include <QStringList>

/// The environment of an update: devices on a simulated bus, a firmware server on the port for which the
/// program was built, the program in a folder of its own with stand-in tools beside it, and a display. A test
/// makes its changes between the constructor and start().
class UpdateScenario
{
public:
    /// Prepares a server with an image for `model`, a bus with that device, and a control list with it. The
    /// program runs on `system`, in a folder whose name begins with `folderName`.
    explicit UpdateScenario(const QString &model, std::unique_ptr<TargetSystem> system = makeNativeSystem(),
                            const QString &folderName = QString());
    UpdateScenario(const UpdateScenario &) = delete;
    UpdateScenario &operator=(const UpdateScenario &) = delete;

    /// The devices on the bus; initially the model's device.
    QList<QJsonObject> devices;
    /// The file of a report whose bus is shown in their place; empty for none.
    QString report;
    /// Whether there is a firmware server, and its faults.
    bool withServer = true;
    QStringList serverFaults;
    /// The program's arguments.
    QStringList arguments;
    /// Whether to use the display of this process, so that people can watch, instead of a separate one.
    bool onExistingDisplay = false;
    /// The size of the separate display. A case may have started that already.
    QSize screen{1280, 900};

    FirmwareRoot firmware;
    StagedProgram program;
    ServerSession server;
    XvfbSession display;
    BusSession bus;
    ProbeClient probe;

    const QString &model() const { return m_model; }
    /// Returns the bytes that the server has for the model.
    const QByteArray &image() const { return m_image; }

    /// Starts everything and waits for the window. Returns false on failure; errorText() then returns the
    /// reason.
    bool start();
    /// Presses the start button once the device is detected.
    bool pressStart(int limitMs = eventLimitMs);
    /// Returns the bytes that were burned into the device with this key, by default into the model's device.
    QByteArray burned(const QString &key = QString());
    /// Closes the window and returns the exit code, or nothing if the program does not end in time.
    std::optional<int> closeWindow(int limitMs = eventLimitMs);

    QString errorText() const { return m_error; }

private:
    bool fail(const QString &what, const QString &why);

    QString m_model;
    QByteArray m_image;
    QString m_error;
};
