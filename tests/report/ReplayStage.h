#pragma once

#include "harness/session/BusSession.h"
#include "harness/session/XvfbSession.h"
#include "harness/stage/StagedProgram.h"
#include "harness/window/ProbeClient.h"

#include <QJsonArray>
#include <QStringList>

#include <functional>
#include <memory>

/// What the two programs see of a bus.
struct Seen
{
    /// The devices of "list --json", without their times.
    QJsonArray devices;
    /// The texts in the window about the connection, and their style sheet.
    QStringList window;
    /// The log lines about decisions, each once.
    QStringList decisions;
    /// The lines about HID interfaces of the device's vendors, each once.
    QStringList interfaces;
};

/// Returns the description with each $MODEL replaced by the ids of that model.
QByteArray withIds(const QByteArray &description);

/// Returns the part about the buses of the report in a file; empty if the file cannot be read. Omits the
/// number of HID interfaces of other devices, which a replay does not have.
QByteArray busOf(const QString &report);

/// Runs quillmarsh-cli and the window program, one after the other, on a simulated bus.
class ReplayStage
{
public:
    /// The system of the two programs.
    struct System
    {
        std::function<std::unique_ptr<TargetSystem>()> make;
        QString commandLineProgram;
        /// Whether windows need a display of their own to be drawn.
        bool needsDisplay = false;
    };
    /// Returns the system that this process runs on.
    static System nativeSystem();

    /// Takes the models that are switched on in the form of ReplayBuses::Bus::switchedOn.
    explicit ReplayStage(const char *switchedOn, const System &system = nativeSystem());

    /// Starts the bus.
    bool open(const QString &file, BusFile kind);
    /// Makes quillmarsh-cli write a report.
    bool writeReport(const QString &path);
    /// Returns what both programs see of the bus.
    Seen observe();

    /// Returns the first error; empty if there was none.
    QString errorText() const { return m_error; }

    BusSession &bus() { return m_bus; }
    StagedProgram &commandLine() { return m_commandLine; }

private:
    bool run(const QStringList &arguments);
    void observeWindow(Seen &seen);
    bool fail(const QString &what, const QString &why);

    const bool m_needsDisplay;
    StagedProgram m_commandLine;
    StagedProgram m_window;
    XvfbSession m_display;
    BusSession m_bus;
    ProbeClient m_probe;
    QString m_error;
};
