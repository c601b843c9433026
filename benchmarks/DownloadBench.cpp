#include "benchmarks/Measuring.h"
#include "benchmarks/Subjects.h"

#include "harness/server/NginxServer.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace {

/// One way of fetching the file.
struct Fetcher
{
    const char *name;
    QStringList command;
    QVector<double> figures;
    /// Bytes of TCP payload that arrived over the link.
    QVector<double> carried;
};

/// Returns the commands that fetch `url` to the file "fetched" in the working folder.
QVector<Fetcher> fetchers(const QString &url)
{
    return {
        {"ours", {Measuring::program("quillmarsh-bench-fetch"), url, QStringLiteral("fetched")}, {}, {}},
        {"curl",
         {QStringLiteral("curl"), QStringLiteral("-sS"), QStringLiteral("-f"), QStringLiteral("-o"),
          QStringLiteral("fetched"), url},
         {},
         {}},
        {"aria2",
         {QStringLiteral("aria2c"), QStringLiteral("-q"), QStringLiteral("--no-conf"), QStringLiteral("-x10"),
          QStringLiteral("-s10"), QStringLiteral("-o"), QStringLiteral("fetched"), url},
         {},
         {}}};
}

/// Fetches the file with each fetcher in turn, `rounds` times, and compares the bytes. Returns what went
/// wrong.
QString runRounds(QVector<Fetcher> &all, const QString &source, const QString &folder, int rounds)
{
    const QString fetched = folder + QLatin1String("/fetched");
    for (int round = 0; round < rounds; ++round) {
        for (Fetcher &fetcher : all) {
            QFile::remove(fetched);
            QString error;
            const double before = Measuring::receivedPayload("benchnear");
            const double taken = Measuring::runTimed(fetcher.command, folder, &error);
            if (taken < 0)
                return error;
            if (!Measuring::sameBytes(source, fetched))
                return QLatin1String(fetcher.name) + QStringLiteral(" fetched other bytes");
            fetcher.figures.append(taken);
            fetcher.carried.append(Measuring::receivedPayload("benchnear") - before);
        }
    }
    QFile::remove(fetched);
    return QString();
}

void addFigures(BenchContext &context, const char *subject, const QVector<Fetcher> &all)
{
    for (const Fetcher &fetcher : all)
        context.results.addFigures(QLatin1String(subject) + QLatin1Char('/') + QLatin1String(fetcher.name) +
                                       QLatin1String(" ms"),
                                   fetcher.figures);
}

const QString sourceProblem = QStringLiteral("the file to fetch cannot be written");

/// Makes the file to fetch in a folder that a server can serve, and returns its path; empty if that failed.
QString makeSource(const QString &folder, int mebibytes)
{
    QDir().mkpath(folder + QLatin1String("/root"));
    const QString source = folder + QLatin1String("/root/image");
    return Measuring::makeFile(source, mebibytes) ? source : QString();
}

} // namespace

QString Subjects::loopbackDownload(BenchContext &context)
{
    constexpr double startAndWaitsMs = 300;
    constexpr quint16 port = 18100;
    const QString source = makeSource(context.folder, 256);
    NginxServer server;
    if (source.isEmpty())
        return sourceProblem;
    if (!server.start(context.folder + QLatin1String("/root"), port))
        return server.errorText();
    QVector<Fetcher> all = fetchers(QStringLiteral("http://127.0.0.1:%1/image").arg(port));
    const QString problem = runRounds(all, source, context.folder, context.rounds);
    if (!problem.isEmpty())
        return problem;
    addFigures(context, "download", all);

    const double ours = Measuring::median(all.at(0).figures);
    const double curl = Measuring::median(all.at(1).figures);
    const double aria = Measuring::median(all.at(2).figures);
    context.results.add({QStringLiteral("256 MiB over loopback, 10 segments, merged"),
                         Measuring::milliseconds(ours),
                         QStringLiteral("aria2 %1, curl %2")
                             .arg(Measuring::milliseconds(aria), Measuring::milliseconds(curl)),
                         QStringLiteral("%1 of aria2").arg(Measuring::times(ours / aria)),
                         QStringLiteral("<= 1.12 x aria2 + 300 ms = %1")
                             .arg(Measuring::milliseconds(1.12 * aria + startAndWaitsMs)),
                         ours <= 1.12 * aria + startAndWaitsMs});
    return QString();
}

QString Subjects::lossyDownload(BenchContext &context)
{
    constexpr quint16 port = 18101;
    bool isSet = false;
    int mebibytes = qEnvironmentVariableIntValue("QUILLMARSH_BENCH_LINK_MIB", &isSet);
    if (!isSet)
        mebibytes = 256;
    const QString source = makeSource(context.folder, mebibytes);
    // The server is started at the far end of the link, in another network namespace.
    NginxServer server;
    if (source.isEmpty())
        return sourceProblem;
    if (!server.start(context.folder + QLatin1String("/root"), port, QStringLiteral("10.77.0.2"),
                      {Measuring::program("quillmarsh-bench-link")}))
        return server.errorText();
    QVector<Fetcher> all = fetchers(QStringLiteral("http://10.77.0.2:%1/image").arg(port)).mid(0, 2);
    const QString problem = runRounds(all, source, context.folder, mebibytes < 128 ? context.rounds : 1);
    if (!problem.isEmpty())
        return problem;
    addFigures(context, "link", all);

    const double ours = Measuring::median(all.at(0).figures);
    const double curl = Measuring::median(all.at(1).figures);
    context.results.add({QStringLiteral("%1 MiB through 100 Mbit/s, 40 ms, 0.5 % loss (Reno, %2 round(s))")
                             .arg(mebibytes)
                             .arg(all.at(0).figures.size()),
                         Measuring::milliseconds(ours),
                         QStringLiteral("curl %1").arg(Measuring::milliseconds(curl)),
                         QStringLiteral("%1 x faster").arg(Measuring::times(curl / ours)),
                         QStringLiteral(">= 2 x faster"), curl >= 2 * ours});
    return QString();
}

QString Subjects::cleanDownload(BenchContext &context)
{
    constexpr quint16 port = 18102;
    constexpr int mebibytes = 256;
    const QString source = makeSource(context.folder, mebibytes);
    NginxServer server;
    if (source.isEmpty())
        return sourceProblem;
    if (!server.start(context.folder + QLatin1String("/root"), port, QStringLiteral("10.77.0.2"),
                      {Measuring::program("quillmarsh-bench-link"), QStringLiteral("--clean")}))
        return server.errorText();
    QVector<Fetcher> all = fetchers(QStringLiteral("http://10.77.0.2:%1/image").arg(port));
    all.removeAt(1);
    const QString problem = runRounds(all, source, context.folder, std::min(context.rounds, 3));
    if (!problem.isEmpty())
        return problem;
    addFigures(context, "clean link", all);

    const double size = mebibytes * 1048576.0;
    // A packet of 1500 bytes carries 1448 bytes of the file.
    const double fullSpeed = size * 8 / 100e6 * 1000 * 1500 / 1448;
    const double ours = Measuring::median(all.at(0).figures);
    const double aria = Measuring::median(all.at(1).figures);
    context.results.add({QStringLiteral("%1 MiB through 100 Mbit/s, 20 ms (Reno)").arg(mebibytes),
                         Measuring::milliseconds(ours),
                         QStringLiteral("aria2 %1, the line %2")
                             .arg(Measuring::milliseconds(aria), Measuring::milliseconds(fullSpeed)),
                         QStringLiteral("%1 of the line, %2 of aria2")
                             .arg(Measuring::times(ours / fullSpeed), Measuring::times(ours / aria)),
                         QStringLiteral("<= 1.03 x the line and <= aria2"),
                         ours <= 1.03 * fullSpeed && ours <= aria});
    const double carried = Measuring::median(all.at(0).carried);
    const double carriedForAria = Measuring::median(all.at(1).carried);
    context.results.add({QStringLiteral("the same, bytes over the line per byte of the file"),
                         QString::number(carried / size, 'f', 4),
                         QStringLiteral("aria2 %1").arg(carriedForAria / size, 0, 'f', 4),
                         Measuring::times(carried / carriedForAria), QStringLiteral("<= 1.01"),
                         carried <= 1.01 * size});
    return QString();
}
