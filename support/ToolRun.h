#pragma once

#include "support/Clock.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>

class QObject;

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
    bool crashed = false;
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

/// What becomes of a wait for a tool when the program leaves.
enum class WhenLeaving {
    CutShort, ///< the tool is killed
    WaitOn,   ///< it has its time, though without an event loop: what it does belongs to the leaving
};

/// Runs `program` to its end in a local event loop on the calling thread. Gives it `limitMs` of `clock` to
/// start and then as much to end; a negative limit is none. Nothing is left running.
ToolRun runToolToEnd(const QString &program, const QStringList &arguments, int limitMs,
                     WhenLeaving whenLeaving = WhenLeaving::CutShort, const ToolListener &listener = {},
                     const Clock &clock = Clock::real());

/// Whether the calling thread is waiting for a tool: what an event wakes meanwhile must not begin
/// anything, since it would run in the middle of what needs the tool.
bool isWaitingForTool();

/// Calls `call` from the event loop once the calling thread, which is waiting for a tool, waits for none any
/// more. By then it may wait for another one. `context` belongs to this thread; when it is destroyed, the
/// call is dropped. AfterToolWait is the safer way.
void callAfterToolWait(QObject *context, std::function<void()> call);
