#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>

/// How a command-line tool that was waited for came out.
struct ToolRun
{
    enum End {
        NotStarted, ///< errorString says why
        Finished,   ///< by itself; exitCode is its own, or -1 after a crash
        CutShort,   ///< killed: at the time limit, or because the program leaves
    };

    End end = NotStarted;
    int exitCode = -1;
    /// At most the first MiB of each.
    QByteArray standardOutput;
    QByteArray standardError;
    QString errorString;
};

/// Hears what a tool prints as it comes, in pieces of any size, on the thread that waits. Either may
/// be empty.
struct ToolListener
{
    std::function<void(const QByteArray &)> standardOutput;
    std::function<void(const QByteArray &)> standardError;
};

/// Runs `program` to its end in a local event loop on the calling thread, for at most `limitMs`
/// after its start. Nothing is left running.
ToolRun runToolToEnd(const QString &program, const QStringList &arguments, int limitMs,
                     const ToolListener &listener = {});
