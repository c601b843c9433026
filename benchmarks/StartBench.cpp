#include "benchmarks/Measuring.h"
#include "benchmarks/Subjects.h"

#include "simulator/bench/BenchPaths.h"
#include "simulator/bench/PlainHost.h"
#include "simulator/bench/Polling.h"
#include "simulator/bench/StagedProgram.h"
#include "simulator/bench/XvfbSession.h"

#include <QFile>
#include <QThread>

#include <algorithm>

namespace {

constexpr int paintLimitMs = 20000;
constexpr unsigned long settleMs = 3000;

struct Start
{
    double paintMs = -1;
    Measuring::Memory memory;
};

QByteArray lineOf(const QString &path)
{
    QFile file(path);
    const QByteArray line = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return line.endsWith('\n') ? line : QByteArray();
}

/// Starts the program and tells when it had painted, and what memory it has once it is idle.
Start start(const QString &executable, const QString &display)
{
    StagedProgram program(executable);
    program.setDisplay(display);
    program.setControlList({QStringLiteral("DevMaa")}, {QStringLiteral("USB")});
    const QString paintFile = program.workingFolder() + QLatin1String("/first-paint");
    program.setVariable(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("quillfirstpaint"));
    program.setVariable(QStringLiteral("QUILLMARSH_FIRST_PAINT_FILE"), paintFile);
    PlainHost host;
    Start result;
    const double begin = Measuring::steadyMs();
    if (!host.run(program.launch()) || !pollUntil([&] { return !lineOf(paintFile).isEmpty(); }, paintLimitMs))
        return result;
    QThread::msleep(settleMs);
    result.memory = Measuring::memoryOf(host.processId());
    if (host.programState().running && result.memory.rss > 0)
        result.paintMs = lineOf(paintFile).trimmed().toDouble() - begin;
    return result;
}

/// The rows are all ours against an empty window's, at most half as much again.
void add(BenchContext &context, const QString &what, const char *raw, const QVector<double> &ours,
         const QVector<double> &peer, QString (*shown)(double))
{
    context.results.keep(QStringLiteral("start/ours ") + QLatin1String(raw), ours);
    context.results.keep(QStringLiteral("start/empty window ") + QLatin1String(raw), peer);
    const double ratio = Measuring::median(ours) / Measuring::median(peer);
    context.results.add({what, shown(Measuring::median(ours)),
                         QStringLiteral("empty window %1").arg(shown(Measuring::median(peer))),
                         Measuring::times(ratio), QStringLiteral("<= 1.5 x"), ratio <= 1.5});
}

} // namespace

QString Subjects::startAndMemory(BenchContext &context)
{
    XvfbSession display;
    if (!display.start())
        return display.errorText();
    const QString ours = BenchPaths::program();
    const QString peer = Measuring::program("quillmarsh-bench-empty");
    QVector<double> paints[2];
    QVector<double> rss[2];
    QVector<double> pss[2];
    // The first of each is for the disk's cache.
    for (int round = -1; round < context.rounds; ++round) {
        for (const int which : {0, 1}) {
            const Start seen = start(which == 0 ? ours : peer, display.display());
            if (seen.paintMs < 0)
                return QStringLiteral("no window was painted");
            if (round < 0)
                continue;
            paints[which].append(seen.paintMs);
            rss[which].append(static_cast<double>(seen.memory.rss));
            pss[which].append(static_cast<double>(seen.memory.pss));
        }
    }
    add(context, QStringLiteral("Start to first paint"), "paint ms", paints[0], paints[1],
        &Measuring::milliseconds);
    add(context, QStringLiteral("Idle memory, RSS"), "RSS KiB", rss[0], rss[1], &Measuring::mebibytes);
    add(context, QStringLiteral("Idle memory, PSS"), "PSS KiB", pss[0], pss[1], &Measuring::mebibytes);
    return QString();
}
