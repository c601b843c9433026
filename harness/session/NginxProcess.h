#pragma once

#include "harness/process/ChildProcess.h"

#include <QString>
#include <QStringList>

#include <memory>

/// One nginx with a prefix folder of its own, in the foreground. The destructor ends it, with its workers.
class NginxProcess
{
public:
    /// Starts nginx in `folder`, which holds nginx.conf; that has to name "nginx.pid" as the file of the
    /// process id. `through` is a command that starts nginx somewhere else, such as in another network; it
    /// goes before nginx's own. Returns whether nginx serves; otherwise errorText() has the reason.
    bool start(const QString &folder, const QStringList &through = {});
    /// Ends nginx and its workers as a power failure would: without a last word to anybody.
    void kill();
    bool isRunning() { return m_process && m_process->isRunning(); }
    qint64 processId() const { return m_process ? m_process->processId() : 0; }
    QString errorText() const;

    /// The path of a script of this folder.
    static QString script(const char *name);
    /// Runs a tool in `folder` until its end; its output goes to `output` unless that is null. Returns
    /// whether it ended with 0; otherwise `error` has the reason.
    static bool runTool(const QStringList &command, const QString &folder, QString *error,
                        QByteArray *output = nullptr, const QStringList &environment = {});

private:
    std::unique_ptr<ChildProcess> m_process;
    QString m_error;
};
