#pragma once

#include "harness/installed/KernelCases.h"
#include "harness/session/BusSession.h"
#include "harness/session/XvfbSession.h"
#include "harness/window/ProbeClient.h"

#include <QJsonObject>
#include <QList>
#include <QStringList>

/// One installed program on the kernel's bus. Emulated machines are slow, so its limits are wide.
class KernelRun
{
public:
    static constexpr int limitMs = 240000;

    KernelRun(const KernelCases::Place &place, QList<QJsonObject> devices);

    /// Starts the bus, then the window or quillmarsh-cli. Each returns what went wrong.
    QString startBus();
    QString startWindow();
    QString startCli(const QStringList &arguments);
    /// Starts an update in the window once `model` is detected.
    QString pressStart(const QString &model);
    /// Waits until the window's update has ended and compares its title.
    QString waitForTitle(const QString &title);
    /// Waits for quillmarsh-cli's end and compares its exit code.
    QString waitForExitCode(int code);
    /// Compares what the device was sent and has received with what an update sends, and waits until it runs
    /// its application again.
    QString checkUpdated(const QString &model);
    QString closeWindow();

    QString inStage(const char *name) const { return m_place.stage + QLatin1Char('/') + QLatin1String(name); }

    BusSession bus;
    ProbeClient probe;

private:
    QString start(const QStringList &command);

    KernelCases::Place m_place;
    QList<QJsonObject> m_devices;
    XvfbSession m_display;
};
