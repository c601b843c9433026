#include "benchmarks/Measuring.h"
#include "benchmarks/Subjects.h"

#include "harness/process/PlainHost.h"
#include "harness/session/XvfbSession.h"
#include "harness/stage/StagedProgram.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace {

constexpr int lines = 100000;
constexpr int limitMs = 180000;
/// The pane is full after a fifth of the lines. From then on, memory must not grow.
constexpr double growthLimitKib = 16 * 1024;

QVector<double> figures(const QJsonValue &values)
{
    QVector<double> list;
    const QJsonArray array = values.toArray();
    for (const QJsonValue value : array)
        list.append(value.toDouble());
    return list;
}

/// Returns whether every line has arrived, in order.
bool isWhole(const QStringList &log)
{
    int next = 0;
    for (const QString &line : log) {
        if (line.startsWith(QStringLiteral("line %1:").arg(next, 6, 10, QLatin1Char('0'))))
            ++next;
    }
    return next == lines;
}

} // namespace

QString Subjects::logFlood(BenchContext &context)
{
    XvfbSession display;
    if (!display.start())
        return display.errorText();
    StagedProgram program(Measuring::program("quillmarsh-bench-log"));
    program.setDisplay(display.display());
    program.setVariable(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QString());
    PlainHost host;
    const QString resultFile = context.folder + QLatin1String("/log.json");
    if (!host.run(program.launch({resultFile})))
        return host.errorText();
    if (host.waitForExit(limitMs) != 0)
        return QStringLiteral("it did not end: ") + program.standardError().right(500);
    if (!isWhole(program.updateLogLines()))
        return QStringLiteral("lines are missing from the log file");
    QFile file(resultFile);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    const QJsonObject result = QJsonDocument::fromJson(file.readAll()).object();
    const QVector<double> late = figures(result.value(QLatin1String("late")));
    const QVector<double> rss = figures(result.value(QLatin1String("rss")));
    if (late.isEmpty() || rss.size() < 10)
        return QStringLiteral("too few figures");
    context.results.addFigures(QStringLiteral("log/late ms"), late);
    context.results.addFigures(QStringLiteral("log/RSS KiB, five a second"), rss);
    const double worst = *std::max_element(late.begin(), late.end());
    context.results.add(
        {QStringLiteral("100,000 log lines at 5,000 a second, log window open: a 10 ms timer's worst"),
         Measuring::milliseconds(worst),
         QStringLiteral("99th percentile %1").arg(Measuring::milliseconds(Measuring::percentile(late, 0.99))),
         QStringLiteral("-"), QStringLiteral("<= 50 ms late"), worst <= 50});
    const int half = rss.size() / 2;
    const double growth =
        *std::max_element(rss.begin() + half, rss.end()) - *std::max_element(rss.begin(), rss.begin() + half);
    context.results.add(
        {QStringLiteral("The same: memory in the second half over the first"), Measuring::mebibytes(growth),
         QStringLiteral("highest %1").arg(Measuring::mebibytes(*std::max_element(rss.begin(), rss.end()))),
         QStringLiteral("-"), QStringLiteral("bounded: <= 16 MiB"), growth <= growthLimitKib});
    return QString();
}
