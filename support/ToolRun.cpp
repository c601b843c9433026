#include "support/ToolRun.h"

#include "support/ShutdownFlag.h"

#include <QEventLoop>
#include <QProcess>
#include <QTimer>

namespace {

constexpr int keptBytes = 1024 * 1024;

thread_local int toolsWaitedFor = 0;

/// Counts, since an event that the wait delivers may wait for a tool of its own.
class WaitMark
{
public:
    WaitMark() { ++toolsWaitedFor; }
    ~WaitMark() { --toolsWaitedFor; }
    Q_DISABLE_COPY(WaitMark)
};

void take(const QByteArray &more, QByteArray &kept, const std::function<void(const QByteArray &)> &hear)
{
    kept += more.left(keptBytes - kept.size());
    if (hear && !more.isEmpty())
        hear(more);
}

void readOutput(QProcess &process, ToolRun &run, const ToolListener &listener)
{
    take(process.readAllStandardOutput(), run.standardOutput, listener.standardOutput);
    take(process.readAllStandardError(), run.standardError, listener.standardError);
}

void waitForEnd(QProcess &process, int limitMs)
{
    QEventLoop loop;
    const ShutdownFlag &flag = ShutdownFlag::instance();
    QObject::connect(&process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), &loop,
                     &QEventLoop::quit);
    QObject::connect(&flag, &ShutdownFlag::raised, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    if (limitMs >= 0)
        QTimer::singleShot(limitMs, &loop, &QEventLoop::quit);
    // Asked after the connection, so that a flag raised meanwhile is not missed.
    if (process.state() != QProcess::NotRunning && !flag.isRaised())
        loop.exec();
}

} // namespace

ToolRun runToolToEnd(const QString &program, const QStringList &arguments, int limitMs,
                     WhenLeaving whenLeaving, const ToolListener &listener)
{
    const WaitMark mark;
    ToolRun run;
    QProcess process;
    process.start(program, arguments, QIODevice::ReadWrite);
    if (!process.waitForStarted(limitMs)) {
        run.errorString = process.errorString();
        return run;
    }
    const auto read = [&process, &run, &listener] {
        readOutput(process, run, listener);
    };
    QObject::connect(&process, &QProcess::readyReadStandardOutput, read);
    QObject::connect(&process, &QProcess::readyReadStandardError, read);
    if (whenLeaving == WhenLeaving::WaitOn)
        process.waitForFinished(limitMs);
    else
        waitForEnd(process, limitMs);
    if (process.state() == QProcess::NotRunning) {
        run.end = ToolRun::Finished;
        run.crashed = process.exitStatus() == QProcess::CrashExit;
        run.exitCode = run.crashed ? -1 : process.exitCode();
    } else {
        run.end = ToolRun::CutShort;
        process.kill();
        process.waitForFinished(1000);
    }
    readOutput(process, run, listener);
    return run;
}

bool isWaitingForTool()
{
    return toolsWaitedFor > 0;
}
