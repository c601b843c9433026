#include "support/process/ToolRun.h"

#include "support/Clock.h"
#include "support/process/ShutdownFlag.h"

#include <QEventLoop>
#include <QPointer>
#include <QProcess>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <iterator>
#include <mutex>
#include <utility>
#include <vector>

namespace {

constexpr int keptBytes = 1024 * 1024;

struct LaterCall
{
    /// The waiting thread.
    QThread *thread;
    QPointer<QObject> context;
    std::function<void()> call;
};

/// The calls that are postponed until the waits of their threads have ended. Not a thread_local list: its
/// destructor would run at the end of the thread, where programs built with MinGW-w64 crash or hang.
struct LaterCalls
{
    std::mutex mutex;
    std::vector<LaterCall> all;

    static LaterCalls &instance()
    {
        static auto *calls = new LaterCalls;
        return *calls;
    }
    /// Removes and returns the calls of the calling thread, in order.
    std::vector<LaterCall> takeOwn()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        const auto own = std::stable_partition(all.begin(), all.end(), [](const LaterCall &later) {
            return later.thread != QThread::currentThread();
        });
        std::vector<LaterCall> taken(std::make_move_iterator(own), std::make_move_iterator(all.end()));
        all.erase(own, all.end());
        return taken;
    }
};

thread_local int toolsWaitedFor = 0;

/// Marks a wait of the calling thread. Waits are counted, because an event that is handled during a wait may
/// start another one.
class WaitMark
{
public:
    WaitMark() { ++toolsWaitedFor; }
    ~WaitMark()
    {
        if (--toolsWaitedFor > 0)
            return;
        // Queued, because the caller has not yet used the tool's output.
        for (const LaterCall &later : LaterCalls::instance().takeOwn()) {
            if (later.context)
                QMetaObject::invokeMethod(later.context, later.call, Qt::QueuedConnection);
        }
    }
    Q_DISABLE_COPY(WaitMark)
};

void forward(const QByteArray &bytes, QByteArray &kept, const std::function<void(const QByteArray &)> &listen)
{
    kept += bytes.left(keptBytes - kept.size());
    if (listen && !bytes.isEmpty())
        listen(bytes);
}

void readOutput(QProcess &process, ToolRun &run, const ToolListener &listener)
{
    forward(process.readAllStandardOutput(), run.standardOutput, listener.standardOutput);
    forward(process.readAllStandardError(), run.standardError, listener.standardError);
}

/// The time limit of a tool. The clock is read at intervals, so the limit may be exceeded by one of them.
class Limit
{
public:
    /// A negative `limitMs` means no limit; the clock is not read then.
    Limit(int limitMs, const Clock &clock)
        : m_clock(clock),
          m_limitMs(limitMs),
          m_startMs(limitMs < 0 ? 0 : clock.nowMs())
    {
    }

    /// Returns the milliseconds until the next check; 0 when the time is up.
    int untilNextCheckMs() const
    {
        constexpr qint64 intervalMs = 50;
        return m_limitMs < 0
                   ? static_cast<int>(intervalMs)
                   : static_cast<int>(qBound<qint64>(0, m_startMs + m_limitMs - m_clock.nowMs(), intervalMs));
    }
    bool exists() const { return m_limitMs >= 0; }

private:
    const Clock &m_clock;
    const int m_limitMs;
    const qint64 m_startMs;
};

/// Returns whether the process has started. It may have ended since.
bool waitForStart(QProcess &process, const Limit &limit)
{
    bool started = process.state() == QProcess::Running;
    for (int stepMs = 1; !started && process.state() == QProcess::Starting && stepMs > 0;) {
        stepMs = limit.untilNextCheckMs();
        started = process.waitForStarted(stepMs);
    }
    return started;
}

void waitForEnd(QProcess &process, const Limit &limit)
{
    QEventLoop loop;
    const ShutdownFlag &flag = ShutdownFlag::instance();
    QObject::connect(&process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), &loop,
                     &QEventLoop::quit);
    QObject::connect(&flag, &ShutdownFlag::raised, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    QTimer checkTimer;
    checkTimer.setSingleShot(true);
    QObject::connect(&checkTimer, &QTimer::timeout, &loop, [&] {
        if (const int nextMs = limit.untilNextCheckMs(); nextMs > 0)
            checkTimer.start(nextMs);
        else
            loop.quit();
    });
    if (limit.exists())
        checkTimer.start(limit.untilNextCheckMs());
    // Checked after connecting, so that a flag raised in between is not missed.
    if (process.state() != QProcess::NotRunning && !flag.isRaised())
        loop.exec();
}

void waitForEndWithoutEvents(QProcess &process, const Limit &limit)
{
    int stepMs = limit.untilNextCheckMs();
    while (!process.waitForFinished(stepMs) && process.state() != QProcess::NotRunning && stepMs > 0)
        stepMs = limit.untilNextCheckMs();
}

} // namespace

ToolRun runToolToEnd(const QString &program, const QStringList &arguments, int limitMs, OnShutdown onShutdown,
                     const ToolListener &listener, const Clock &clock)
{
    const WaitMark mark;
    ToolRun run;
    QProcess process;
    process.start(program, arguments, QIODevice::ReadWrite);
    if (!waitForStart(process, Limit(limitMs, clock))) {
        run.errorString = process.errorString();
        return run;
    }
    const auto read = [&process, &run, &listener] {
        readOutput(process, run, listener);
    };
    QObject::connect(&process, &QProcess::readyReadStandardOutput, read);
    QObject::connect(&process, &QProcess::readyReadStandardError, read);
    if (onShutdown == OnShutdown::KeepWaiting)
        waitForEndWithoutEvents(process, Limit(limitMs, clock));
    else
        waitForEnd(process, Limit(limitMs, clock));
    if (process.state() == QProcess::NotRunning) {
        run.end = ToolRun::Finished;
        run.crashed = process.exitStatus() == QProcess::CrashExit;
        run.exitCode = run.crashed ? -1 : process.exitCode();
    } else {
        run.end = ToolRun::Killed;
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

void callAfterToolWait(QObject *context, std::function<void()> call)
{
    LaterCalls &calls = LaterCalls::instance();
    const std::lock_guard<std::mutex> lock(calls.mutex);
    calls.all.push_back({QThread::currentThread(), context, std::move(call)});
}
