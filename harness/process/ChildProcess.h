#pragma once

#include "harness/process/BoundProcess.h"
#include "simulator/time/RunningTime.h"

#include <QJsonObject>
#include <QProcessEnvironment>
#include <QTemporaryDir>

/// A helper process of the test harness with an open standard input. Its output goes to files, so that it
/// never waits for a reader and nobody has to run an event loop. The destructor ends it.
class ChildProcess
{
public:
    ChildProcess();
    ~ChildProcess();
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    /// Starts `command` (program, then arguments) with `environment`. False: see errorText().
    bool start(const QStringList &command,
               const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment());
    /// Waits for the first whole line of the standard output; empty when the process ended or
    /// `limitMs` passed before it came.
    QByteArray waitForFirstLine(int limitMs = eventLimitMs);
    /// The same for a line that is a JSON object with a "port"; empty when none came.
    QJsonObject waitForReadyLine(int limitMs = eventLimitMs);
    /// That line's port alone; 0 when none came.
    quint16 waitForPort(int limitMs = eventLimitMs);

    bool isRunning() { return m_process.isRunning(); }
    qint64 processId() const { return m_process.leaderId(); }
    /// Closes the standard input and gives the process `graceMs` to end; then terminates it, then
    /// kills it and its process group. Returns whether it ended by itself.
    bool end(int graceMs);
    /// Kills the process and its process group at once.
    void kill();

    /// What went wrong last, with the end of the process's standard error.
    QString errorText() const;

private:
    QByteArray contents(const char *fileName) const;

    QTemporaryDir m_folder;
    BoundProcess m_process;
    QString m_error;
};
