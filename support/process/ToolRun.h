#pragma once

#include "support/Clock.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>

class QObject;

/// The result of running a command-line tool to its end.
struct ToolRun
{
    enum End {
        NotStarted, ///< errorString says why
        Finished,   ///< by itself; exitCode is its own, or -1 after a crash
        Killed,     ///< because of the time limit, or because the program shuts down
    };

    End end = NotStarted;
    int exitCode = -1;
    bool crashed = false;
    /// At most the first MiB of each stream.
    QByteArray standardOutput;
    QByteArray standardError;
    QString errorString;
};

/// Receives the output of a tool as it arrives, in pieces of any size, on the waiting thread. Either function
/// may be empty.
struct ToolListener
{
    std::function<void(const QByteArray &)> standardOutput;
    std::function<void(const QByteArray &)> standardError;
};

/// What happens to a running tool when the program shuts down.
enum class OnShutdown {
    Kill,
    KeepWaiting, ///< without an event loop: for tools that are a part of the shutdown
};

/// Runs `program` to its end in a local event loop on the calling thread. It gets `limitMs` of `clock` to
/// start and the same time again to finish; a negative value means no limit. The process has ended when this
/// returns.
ToolRun runToolToEnd(const QString &program, const QStringList &arguments, int limitMs,
                     OnShutdown onShutdown = OnShutdown::Kill, const ToolListener &listener = {},
                     const Clock &clock = Clock::real());

/// Returns whether the calling thread is waiting for a tool. Event handlers must not start anything then,
/// because it would run in the middle of the code that waits.
bool isWaitingForTool();

/// Calls `call` from the event loop after the calling thread's current wait for a tool. The thread may have
/// started another wait by then. `context` belongs to the calling thread; the call is dropped when it is
/// destroyed. Prefer AfterToolWait, which handles both.
void callAfterToolWait(QObject *context, std::function<void()> call);
