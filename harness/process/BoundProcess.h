#pragma once

#include <QProcess>

/// A process that does not outlive this one, so that a killed test leaves no processes behind. It ends when
/// the thread that started it ends, and it can be killed together with its child processes.
class BoundProcess : public QProcess
{
public:
    BoundProcess();

    /// Starts `program` and waits until it runs, for at most `limitMs` of running time.
    bool startAndWait(const QString &program, const QStringList &arguments, int limitMs);
    /// Returns the process id, also after the process has ended.
    qint64 leaderId() const { return m_leaderId; }
    /// Returns whether the process is running. Does not need an event loop to notice its end.
    bool isRunning();
    /// Kills the process and its child processes, as far as they are still running.
    void killAll();

protected:
    void setupChildProcess() override;

private:
    qint64 m_leaderId = 0;
};
