#include "harness/soak/SoakRun.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTextStream>
#include <QVector>

namespace {

constexpr int samples = 8;
/// What a sample may exceed the one at half of the run by. The memory allocator keeps some of what was freed.
constexpr qint64 allowedKibibytes = 4096;
constexpr int allowedHandles = 4;
constexpr int allowedThreads = 4;
/// A look at the bus may be under way.
constexpr int allowedFiles = 3;
/// The pane keeps so many lines, and the memory of a line until then.
constexpr int paneLines = 22000;
constexpr double kibibytesOfALine = 1.0;
/// The segments of a download are kept after its run: ten of them take 5 KiB, and the memory allocator loses
/// about as much around them.
constexpr double kibibytesOfAnUpdate = 10.0;

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

void print(int devices, const Use &use, qint64 elapsedMs)
{
    out() << "| " << devices << " | " << elapsedMs / 1000 << " s | " << use.handles << " | " << use.threads
          << " | " << use.kibibytes << " KiB | " << use.lines << " | " << use.files << " |\n";
    out().flush();
}

/// Returns what has grown in the second half of the run, which had so many updates; empty if nothing has.
QString compare(const Use &half, const Use &end, int updates)
{
    const int newLines = qMin(end.lines, paneLines) - qMin(half.lines, paneLines);
    const auto expected =
        static_cast<qint64>(qMax(newLines, 0) * kibibytesOfALine + updates * kibibytesOfAnUpdate);
    if (end.handles > half.handles + allowedHandles)
        return QStringLiteral("handles grow");
    if (end.threads > half.threads + allowedThreads)
        return QStringLiteral("threads grow");
    if (end.kibibytes > half.kibibytes + allowedKibibytes + expected)
        return QStringLiteral("memory grows");
    if (end.files > half.files + allowedFiles)
        return QStringLiteral("the temporary folder grows");
    if (end.lines > paneLines)
        return QStringLiteral("the log pane grows");
    return {};
}

int soak(const char *name, SoakRun &run, const SoakPlan &plan, int devices, int lapse)
{
    out() << '\n'
          << name << ": " << devices << " devices, a clock " << lapse << " times as fast\n\n"
          << "| devices | after | handles | threads | memory of its own | log pane | temporary files |\n"
          << "|---|---|---|---|---|---|---|\n";
    if (const QString problem = run.start(lapse); !problem.isEmpty()) {
        out() << "FAILED: " << problem << '\n';
        return 1;
    }
    QElapsedTimer clock;
    clock.start();
    QVector<Use> seen;
    int wrong = 0;
    int faults = 0;
    for (int number = 0; number < devices; ++number) {
        const SoakPlan::Turn turn = plan.turn(number);
        faults += turn.fault ? 1 : 0;
        if (const QString problem = run.update(turn); !problem.isEmpty()) {
            ++wrong;
            out() << "WRONG: device " << number + 1 << ", " << turn.model << ", "
                  << (turn.fault ? soakFaults().at(*turn.fault).name : "sound") << ": " << problem << '\n';
        }
        if ((number + 1) % qMax(devices / samples, 1) == 0) {
            seen.append(run.use());
            print(number + 1, seen.last(), clock.elapsed());
        }
    }
    out() << '\n'
          << faults << " with a fault, " << wrong << " results wrong, "
          << static_cast<qint64>(devices) * 3600000 / qMax<qint64>(clock.elapsed(), 1)
          << " updates an hour.\n";
    out().flush();
    QString problem = run.end();
    if (problem.isEmpty() && seen.size() >= 2)
        problem = compare(seen.at(seen.size() / 2 - 1), seen.last(), devices / 2);
    if (!problem.isEmpty())
        out() << "FAILED: " << problem << '\n';
    return wrong == 0 && problem.isEmpty() ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QCommandLineOption devices(QStringLiteral("devices"), QStringLiteral("How many come."),
                                     QStringLiteral("number"), QStringLiteral("2000"));
    const QCommandLineOption lapse(QStringLiteral("lapse"),
                                   QStringLiteral("How fast the program's clock runs."),
                                   QStringLiteral("times"), QStringLiteral("4"));
    const QCommandLineOption window(QStringLiteral("window"), QStringLiteral("The window alone."));
    const QCommandLineOption terminal(QStringLiteral("terminal"), QStringLiteral("quillmarsh-cli alone."));
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({devices, lapse, window, terminal});
    parser.process(application);
    const int number = parser.value(devices).toInt();
    const int times = parser.value(lapse).toInt();
    const SoakPlan plan;
    int failed = 0;
    if (!parser.isSet(terminal))
        failed += soak("window", *makeWindowSoak(plan), plan, number, times);
    if (!parser.isSet(window))
        failed += soak("quillmarsh-cli --repeat", *makeTerminalSoak(plan), plan, number, times);
    return failed == 0 ? 0 : 1;
}
