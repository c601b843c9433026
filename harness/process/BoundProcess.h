#pragma once

#include <QProcess>

/// A process that is bound to this one, so that a test that is killed leaves nothing behind: it
/// ends when the thread that started it ends, and what it has started itself can be killed with it.
class BoundProcess : public QProcess
{
public:
    BoundProcess();

    /// Starts `program` and waits until it runs, at most `limitMs` of running time.
    bool startAndWait(const QString &program, const QStringList &arguments, int limitMs);
    /// Its id, also after its end.
    qint64 leaderId() const { return m_leaderId; }
    /// Whether it runs, without an event loop that would tell of its end.
    bool isRunning();
    /// Kills what is left of the process and of what it has started.
    void killAll();

protected:
    void setupChildProcess() override;

private:
    qint64 m_leaderId = 0;
};
