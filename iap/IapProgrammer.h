#pragma once

#include "iap/IapAnswer.h"
#include "iap/IapArguments.h"
#include "iap/IapDevice.h"
#include "iap/IapRun.h"
#include "session/UpdateResult.h"
#include "support/Clock.h"
#include "support/lock/UpdateLock.h"
#include "support/log/Reporter.h"
#include "support/process/ToolRun.h"

#include <QObject>
#include <QProcess>
#include <QString>
#include <QTimer>

#include <functional>
#include <optional>

/// The external IAP programmer: asks it for its ports ("GetData"), starts it on a device, turns its output
/// into titles and progress, and ends it. Needs no window. Lives on one thread with an event loop.
///
/// A run: take the update lock, prepare(), start(). Then connect outputReady() to readOutput() and exited()
/// to conclude(), directly or through slots that do more.
class IapProgrammer : public QObject
{
    Q_OBJECT

public:
    /// Means "no device"; the initial value of both ids.
    static constexpr quint32 noDevice = 0xFFFFFFFF;

    struct Dependencies
    {
        /// The path of the programmer.
        QString program;
        /// Receives titles and progress.
        Reporter &reporter;
        /// Receives the log lines, which must not be queued behind others.
        std::function<void(const QString &line)> log;
        const UpdateLock &lock;
        const Clock &clock = Clock::real();
    };

    /// The result of "GetData".
    struct Ports
    {
        /// False if the programmer was not asked because another copy of the program is updating a device.
        bool wereAskedFor = false;
        QString rawAnswer;
        IapAnswer found;
    };

    enum class StartResult {
        Started,        ///< exited() will be emitted
        AlreadyRunning, ///< nothing was done
        NotABinFile,    ///< the file to program has another suffix; a line was logged
        NotStarted,     ///< the program is missing, or did not start within 30 s; nothing was logged
    };

    /// Kills programmers left by an earlier run, unless another copy of the program is updating a device and
    /// may be using them. Waits for the kill command in a local event loop. The dependencies must outlive the
    /// object.
    explicit IapProgrammer(const Dependencies &dependencies, QObject *parent = nullptr);
    /// Kills a programmer that is still running, and stale ones.
    ~IapProgrammer() override;

    /// Sets the ids that are passed to the programmer from now on.
    void setDeviceIds(quint32 productId, quint32 vendorId);

    /// Asks the programmer for its ports, in a local event loop without a limit.
    Ports askForPorts();
    /// Prepares a run on `device`: adopts its ids, if it is an IAP device, and asks for the ports. Returns a
    /// run without the values that the user chooses, or nothing if the program is shutting down.
    std::optional<IapRun> prepare(const IapDevice &device);
    /// Starts the programmer. Waits without an event loop until it has started.
    StartResult start(const IapRun &run, const IapArguments::Fields &fields);
    /// Returns whether the programmer is running on a device.
    bool isRunning() const { return m_process != nullptr; }

    /// Reads what the programmer has printed. Ends the programmer when it has reported success or failure.
    void readOutput();
    /// Ends the run of a programmer that has exited.
    void conclude(int exitCode);
    /// Returns how the last run ended, from what the programmer reported.
    UpdateReason verdict() const { return m_verdict; }

signals:
    /// Emitted when the programmer has started, before the first title.
    void started();
    void outputReady();
    /// Emitted with the programmer's progress in percent, after the Reporter has received it.
    void progressed(int percent);
    void exited(int exitCode, QProcess::ExitStatus status);

private:
    void log(const QString &line) { m_dependencies.log(line); }
    void killStale(int limitMs, OnShutdown onShutdown);
    void adoptIdsOf(const IapDevice &device);
    bool launch(const QStringList &arguments);
    void endWithin(int milliseconds);
    void abandon();

    const Dependencies m_dependencies;
    quint32 m_productId = noDevice;
    quint32 m_vendorId = noDevice;
    QProcess *m_process = nullptr;
    UpdateReason m_verdict = UpdateReason::None;
    /// The end of the output so far: a report may be split between two reads.
    QString m_outputTail;
    /// Kills the programmer after terminate(), which a console program on Windows ignores.
    QTimer m_killTimer;
};
