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
    /// The texts of the window that tell of the connection, and their look.
    QStringList window;
    /// The lines of the log that tell of decisions, each once.
    QStringList decisions;
    /// The lines about HID interfaces of the device's vendors, each once.
    QStringList interfaces;
};

/// Returns the description with the ids of the models that are named in it as $MODEL.
QByteArray withIds(const QByteArray &description);

/// Returns what the report in a file tells of the bus, without the number of HID interfaces of other devices:
/// a replay has none of them. Empty if it cannot be read.
QByteArray busOf(const QString &report);

/// One machine: a simulated bus, and on it quillmarsh-cli and the window program, one after the other.
class ReplayStage
{
public:
    /// The system of the two programs.
    struct System
    {
        std::function<std::unique_ptr<TargetSystem>()> make;
        QString commandLineProgram;
        /// Whether its windows need a display to be drawn on.
        bool needsDisplay = false;
    };
    /// The system that this process runs on.
    static System nativeSystem();

    /// `switchedOn` as in ReplayBuses::Bus.
    explicit ReplayStage(const char *switchedOn, const System &system = nativeSystem());

    /// Starts the bus.
    bool open(const QString &file, BusFile kind);
    /// Has quillmarsh-cli write a report.
    bool writeReport(const QString &path);
    /// Looks with both programs.
    Seen look();

    /// Returns what went wrong first; empty if nothing did.
    QString errorText() const { return m_error; }

    BusSession &bus() { return m_bus; }
    StagedProgram &commandLine() { return m_commandLine; }

private:
    bool run(const QStringList &arguments);
    void lookThroughWindow(Seen &seen);
    bool fail(const QString &what, const QString &why);

    const bool m_needsDisplay;
    StagedProgram m_commandLine;
    StagedProgram m_window;
    XvfbSession m_display;
    BusSession m_bus;
    ProbeClient m_probe;
    QString m_error;
};
