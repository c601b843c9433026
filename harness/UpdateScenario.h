#pragma once

#include "harness/session/BusSession.h"
#include "harness/session/FirmwareRoot.h"
#include "harness/session/ServerSession.h"
#include "harness/session/XvfbSession.h"
#include "harness/stage/StagedProgram.h"
#include "harness/window/ProbeClient.h"
#include "simulator/time/RunningTime.h"

#include <QJsonObject>
#include <QList>
#include <QStringList>

/// Everything that an update meets: devices on a simulated bus, a firmware server on the port that
/// the program was built for, the program in a folder of its own with stand-in tools beside it, and
/// a display. Change what a case needs changed between the constructor and start().
class UpdateScenario
{
public:
    /// A server with an image for `model`, a bus with that device, a control list with it.
    /// The program runs on `system`, in a folder whose name begins with `folderName`.
    explicit UpdateScenario(const QString &model, std::unique_ptr<TargetSystem> system = makeNativeSystem(),
                            const QString &folderName = QString());
    UpdateScenario(const UpdateScenario &) = delete;
    UpdateScenario &operator=(const UpdateScenario &) = delete;

    /// What stands on the bus; the model's device at first.
    QList<QJsonObject> devices;
    /// The file of a report whose bus is shown in their place; empty for none.
    QString report;
    /// Whether there is a firmware server, and what is wrong with it.
    bool withServer = true;
    QStringList serverFaults;
    /// The program's arguments.
    QStringList arguments;
    /// Draw on the display that this process has, for people to look at, instead of one of its own.
    bool onExistingDisplay = false;
    /// The size of that display of its own.
    QSize screen{1280, 900};

    FirmwareRoot firmware;
    StagedProgram program;
    ServerSession server;
    XvfbSession display;
    BusSession bus;
    ProbeClient probe;

    const QString &model() const { return m_model; }
    /// The bytes that the server has for the model.
    const QByteArray &image() const { return m_image; }

    /// Starts it all and waits for the window; false tells why in errorText().
    bool start();
    /// Presses the start button once the device is detected.
    bool pressStart(int limitMs = eventLimitMs);
    /// The bytes that were burned into the device of this key, the model's at first.
    QByteArray burned(const QString &key = QString());
    /// Asks the window to close and returns the exit code; none when it is not gone in time.
    std::optional<int> closeWindow(int limitMs = eventLimitMs);

    QString errorText() const { return m_error; }

private:
    bool fail(const QString &what, const QString &why);

    QString m_model;
    QByteArray m_image;
    QString m_error;
};
