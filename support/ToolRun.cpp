#include "support/ToolRun.h"

#include "support/ShutdownFlag.h"

#include <QEventLoop>
#include <QProcess>
#include <QTimer>

namespace {

constexpr int keptBytes = 1024 * 1024;

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
    QTimer::singleShot(limitMs, &loop, &QEventLoop::quit);
    // Asked after the connection, so that a flag raised meanwhile is not missed.
    if (process.state() != QProcess::NotRunning && !flag.isRaised())
        loop.exec();
}

} // namespace

ToolRun runToolToEnd(const QString &program, const QStringList &arguments, int limitMs,
                     const ToolListener &listener)
{
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
    waitForEnd(process, limitMs);
    if (process.state() == QProcess::NotRunning) {
        run.end = ToolRun::Finished;
        run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    } else {
        run.end = ToolRun::CutShort;
        process.kill();
        process.waitForFinished(1000);
    }
    readOutput(process, run, listener);
    return run;
}
