#pragma once

#include <QJsonObject>
#include <QProcess>

/// The one program that a bus controller runs. It leads a process group of its own, which is
/// killed as a whole: what the program started does not outlive it and this.
class ProgramUnderTest : private QProcess
{
public:
    ProgramUnderTest();
    ~ProgramUnderTest() override;

    using QProcess::processId;

    /// "program", "arguments", "workingDirectory", "environment" (added to this process's own; null
    /// removes a variable), "stdout" and "stderr" (files; else discarded), all as in README.md.
    /// Returns what went wrong.
    QString run(const QJsonObject &request, const QString &busAddress);
    bool isRunning() const { return state() != NotRunning; }
    /// Kills the program and everything that it started, and waits for the program's end.
    void killAll();
    /// {"running", "exitCode" (null while it runs or when it never ran), "signalled"}
    QJsonObject describe() const;

protected:
    void setupChildProcess() override;

private:
    void killGroup();

    qint64 m_group = 0;
    bool m_hasRun = false;
};
