#pragma once

#include "harness/process/ChildProcess.h"

#include <QString>
#include <QStringList>

#include <memory>

/// An nginx process in the foreground, with a separate prefix folder. The destructor ends it and its workers.
class NginxProcess
{
public:
    /// Starts nginx in `folder`, which must contain nginx.conf with "nginx.pid" as the file for the process
    /// id. `through` is a command that runs nginx elsewhere, for example in another network namespace; the
    /// command line of nginx is appended to it. Returns whether nginx accepts connections; if not,
    /// errorText() returns the reason.
    bool start(const QString &folder, const QStringList &through = {});
    /// Kills nginx and its workers without closing their connections properly, as a power failure would.
    void kill();
    bool isRunning() { return m_process && m_process->isRunning(); }
    qint64 processId() const { return m_process ? m_process->processId() : 0; }
    QString errorText() const;

    /// Returns the path of a script in this folder.
    static QString script(const char *name);
    /// Runs a tool in `folder` to its end and stores its output in `output`, unless that is null. Returns
    /// whether it ended with 0; if not, `error` is set to the reason.
    static bool runTool(const QStringList &command, const QString &folder, QString *error,
                        QByteArray *output = nullptr, const QStringList &environment = {});

private:
    std::unique_ptr<ChildProcess> m_process;
    QString m_error;
};
