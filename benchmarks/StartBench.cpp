#include "benchmarks/Measuring.h"
#include "benchmarks/Subjects.h"

#include "harness/BuildPaths.h"
#include "harness/process/PlainHost.h"
#include "harness/process/Polling.h"
#include "harness/session/XvfbSession.h"
#include "harness/stage/StagedProgram.h"
#include "simulator/files/WholeFile.h"

#include <QThread>

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
    const QByteArray line = WholeFile::read(path);
    return line.endsWith('\n') ? line : QByteArray();
}

/// Starts the program and returns when it had painted its window and how much memory it uses once it is idle.
Start start(const QString &executable, const QStringList &arguments, const QString &display)
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
    if (!host.run(program.launch(arguments)) ||
        !pollUntil([&] { return !lineOf(paintFile).isEmpty(); }, paintLimitMs))
        return result;
    QThread::msleep(settleMs);
    result.memory = Measuring::memoryOf(host.processId());
    if (host.programState().running && result.memory.rss > 0)
        result.paintMs = lineOf(paintFile).trimmed().toDouble() - begin;
    return result;
}

/// The figures of the three programs: ours, the empty window, and the window with a text and network access.
struct Figures
{
    QVector<double> of[3];
};

/// Compares our program with the window that has what every program of this kind needs. The empty window
/// shows how much of that Qt itself takes.
void add(BenchContext &context, const QString &what, const Figures &figures, QString (*shown)(double))
{
    const char *const names[] = {"ours", "empty window", "window with text and network"};
    double medians[3] = {};
    for (int which = 0; which < 3; ++which) {
        context.results.addFigures(what + QLatin1Char('/') + QLatin1String(names[which]), figures.of[which]);
        medians[which] = Measuring::median(figures.of[which]);
    }
    const double ratio = medians[0] / medians[2];
    context.results.add(
        {what, shown(medians[0]),
         QStringLiteral("window with a text, the TLS report and network access %1 (empty window %2)")
             .arg(shown(medians[2]), shown(medians[1])),
         Measuring::times(ratio), QStringLiteral("<= 1.5 x"), ratio <= 1.5});
}

} // namespace

QString Subjects::startAndMemory(BenchContext &context)
{
    XvfbSession display;
    if (!display.start())
        return display.errorText();
    const QString ours = BuildPaths::program();
    const QString peer = Measuring::program("quillmarsh-bench-empty");
    Figures paints;
    Figures rss;
    Figures pss;
    // The first start of each program fills the disk's cache and does not count.
    for (int round = -1; round < context.rounds; ++round) {
        for (const int which : {0, 1, 2}) {
            const QStringList arguments = which == 2 ? QStringList{QStringLiteral("full")} : QStringList();
            const Start seen = start(which == 0 ? ours : peer, arguments, display.display());
            if (seen.paintMs < 0)
                return QStringLiteral("no window was painted");
            if (round < 0)
                continue;
            paints.of[which].append(seen.paintMs);
            rss.of[which].append(static_cast<double>(seen.memory.rss));
            pss.of[which].append(static_cast<double>(seen.memory.pss));
        }
    }
    add(context, QStringLiteral("Start to first paint"), paints, &Measuring::milliseconds);
    add(context, QStringLiteral("Idle memory, RSS"), rss, &Measuring::mebibytes);
    add(context, QStringLiteral("Idle memory, PSS"), pss, &Measuring::mebibytes);
    return QString();
}
