#include "support/ToolRun.h"

#include "support/Clock.h"
#include "support/ShutdownFlag.h"

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
    /// The thread that waits.
    QThread *thread;
    QPointer<QObject> context;
    std::function<void()> call;
};

/// What is called after the waits of all threads. A list for each thread would be destroyed at the thread's
/// end, and a Windows program of this compiler crashes or hangs there.
struct LaterCalls
{
    std::mutex mutex;
    std::vector<LaterCall> all;

    static LaterCalls &instance()
    {
        static auto *calls = new LaterCalls;
        return *calls;
    }
    /// Removes and returns those of the calling thread, in their order.
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

/// Counts, since an event that the wait delivers may wait for a tool of its own.
class WaitMark
{
public:
    WaitMark() { ++toolsWaitedFor; }
    ~WaitMark()
    {
        if (--toolsWaitedFor > 0)
            return;
        // Not now: the caller has not used the tool's answer yet.
        for (const LaterCall &later : LaterCalls::instance().takeOwn()) {
            if (later.context)
                QMetaObject::invokeMethod(later.context, later.call, Qt::QueuedConnection);
        }
    }
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

/// The time that a tool has. The clock is looked at now and then, so the limit is kept to within a look.
class Limit
{
public:
    /// A negative limit is none; the clock is not looked at then.
    Limit(int limitMs, const Clock &clock)
        : m_clock(clock),
          m_limitMs(limitMs),
          m_startMs(limitMs < 0 ? 0 : clock.nowMs())
    {
    }

    /// Returns the milliseconds until the next look; 0 when the time is up.
    int untilNextLookMs() const
    {
        constexpr qint64 lookMs = 50;
        return m_limitMs < 0
                   ? static_cast<int>(lookMs)
                   : static_cast<int>(qBound<qint64>(0, m_startMs + m_limitMs - m_clock.nowMs(), lookMs));
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
        stepMs = limit.untilNextLookMs();
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
    QTimer look;
    look.setSingleShot(true);
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (const int nextMs = limit.untilNextLookMs(); nextMs > 0)
            look.start(nextMs);
        else
            loop.quit();
    });
    if (limit.exists())
        look.start(limit.untilNextLookMs());
    // Asked after the connection, so that a flag raised meanwhile is not missed.
    if (process.state() != QProcess::NotRunning && !flag.isRaised())
        loop.exec();
}

void waitForEndWithoutEvents(QProcess &process, const Limit &limit)
{
    int stepMs = limit.untilNextLookMs();
    while (!process.waitForFinished(stepMs) && process.state() != QProcess::NotRunning && stepMs > 0)
        stepMs = limit.untilNextLookMs();
}

} // namespace

ToolRun runToolToEnd(const QString &program, const QStringList &arguments, int limitMs,
                     WhenLeaving whenLeaving, const ToolListener &listener, const Clock &clock)
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
    if (whenLeaving == WhenLeaving::WaitOn)
        waitForEndWithoutEvents(process, Limit(limitMs, clock));
    else
        waitForEnd(process, Limit(limitMs, clock));
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

void callAfterToolWait(QObject *context, std::function<void()> call)
{
    LaterCalls &calls = LaterCalls::instance();
    const std::lock_guard<std::mutex> lock(calls.mutex);
    calls.all.push_back({QThread::currentThread(), context, std::move(call)});
}
