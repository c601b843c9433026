#pragma once

#include "harness/process/BoundProcess.h"
#include "simulator/time/RunningTime.h"

#include <QJsonObject>
#include <QProcessEnvironment>
#include <QTemporaryDir>

/// A helper process of the test harness with an open standard input. Its output goes to files, so that it
/// never blocks and its owner needs no event loop. The destructor ends it.
class ChildProcess
{
public:
    ChildProcess();
    ~ChildProcess();
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    /// Starts `command` (program, then arguments) with `environment`. Returns false on failure; see
    /// errorText().
    bool start(const QStringList &command,
               const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment());
    /// Waits for the first complete line of standard output. Returns an empty line if the process ends or
    /// `limitMs` pass before.
    QByteArray waitForFirstLine(int limitMs = eventLimitMs);
    /// Like waitForFirstLine(), for a line that is a JSON object with a "port". Returns an empty object on
    /// failure.
    QJsonObject waitForReadyLine(int limitMs = eventLimitMs);
    /// Like waitForReadyLine(), but returns only the port; 0 on failure.
    quint16 waitForPort(int limitMs = eventLimitMs);

    bool isRunning() { return m_process.isRunning(); }
    qint64 processId() const { return m_process.leaderId(); }
    /// Closes standard input and gives the process `graceMs` to end; then terminates it, then kills it and
    /// its process group. Returns whether it ended by itself.
    bool end(int graceMs);
    /// Kills the process and its process group at once.
    void kill();

    /// Returns the last error, with the end of the process's standard error.
    QString errorText() const;

private:
    QByteArray contents(const char *fileName) const;

    QTemporaryDir m_folder;
    BoundProcess m_process;
    QString m_error;
};
