#include "benchmarks/Measuring.h"
#include "benchmarks/ServingNeeds.h"
#include "benchmarks/Subjects.h"

#include "harness/process/Polling.h"
#include "harness/server/EdgeAndOrigin.h"
#include "harness/server/ManyClients.h"
#include "simulator/files/WholeFile.h"

#include <QTextStream>

#include <algorithm>
#include <numeric>

namespace {

constexpr int processors = 2;
constexpr double mebibyte = 1048576;
/// The sizes of the images, and how many clients fetch each at once: a crowd that finds the cache empty, and
/// fewer clients to measure the costs of an update while no client waits for a processor.
constexpr int crowdMebibytes = 4;
constexpr int crowd = 200;
constexpr int smallMebibytes = 2;
constexpr int largeMebibytes = 16;
constexpr int few = 40;

/// The costs of the clients of one round for the caching server.
struct Round
{
    int clients = 0;
    double seconds = 0;
    double processorMs = 0;
    /// TCP payload on the loopback device in both directions.
    double bytes = 0;
    double peakKibibytes = 0;
    ClientResults results;
    QVector<ServedRequest> requests;
};

/// Returns the processes of the caching server.
QVector<qint64> edgeProcesses(const EdgeAndOrigin &sites)
{
    return QVector<qint64>{sites.edgeProcessId()} + Measuring::childrenOf(sites.edgeProcessId());
}

template <typename Figure>
double sumOver(const QVector<qint64> &processes, const Figure &figure)
{
    return std::accumulate(processes.begin(), processes.end(), 0.0,
                           [&](double sum, qint64 process) { return sum + figure(process); });
}

double processorMs(const QVector<qint64> &processes)
{
    return sumOver(processes, [](qint64 process) { return std::max(0.0, Measuring::processorMs(process)); });
}

double kibibytes(const QVector<qint64> &processes)
{
    return sumOver(processes,
                   [](qint64 process) { return static_cast<double>(Measuring::memoryOf(process).pss); });
}

QVector<ServedRequest> imageRequests(const QVector<ServedRequest> &all)
{
    return ServedRequests::ending(all, QStringLiteral(".img"));
}

/// Lets `count` clients fetch the model at once. Returns what went wrong.
QString fetchAtOnce(const EdgeAndOrigin &sites, const QString &model, int count, Round &round)
{
    round = Round();
    round.clients = count;
    sites.forgetRequests();
    const QVector<qint64> edge = edgeProcesses(sites);
    const double processorBefore = processorMs(edge);
    const double bytesBefore = Measuring::receivedPayload("lo");
    const double start = Measuring::steadyMs();
    ManyClients clients(Measuring::program("quillmarsh-fetch-clients"));
    if (!clients.start(count, EdgeAndOrigin::manifestUrl(), model, sites.authorityFile()))
        return clients.errorText();
    while (!clients.haveEnded()) {
        round.peakKibibytes = std::max(round.peakKibibytes, kibibytes(edge));
        QThread::msleep(100);
    }
    round.seconds = (Measuring::steadyMs() - start) / 1000;
    round.results = clients.results();
    const int complete = std::accumulate(round.results.sums.begin(), round.results.sums.end(), 0);
    if (complete != count || round.results.sums.size() != 1)
        return QStringLiteral("%1 of %2 clients have the image: ").arg(complete).arg(count) +
               round.results.failures.value(0) + clients.errorText();
    // nginx writes a request to its log only when the request has ended.
    pollUntil([&] { return imageRequests(sites.edgeRequests()).size() >= 11 * count; });
    round.requests = sites.edgeRequests();
    round.processorMs = processorMs(edge) - processorBefore;
    round.bytes = Measuring::receivedPayload("lo") - bytesBefore;
    return {};
}

/// Fetches the model `rounds` times with a single client, so that nothing is sent again because the
/// processors are busy, and sets `bytes` to the median of the bytes. Returns what went wrong.
QString measureBytes(const EdgeAndOrigin &sites, const QString &model, int rounds, double &bytes)
{
    QVector<double> figures;
    QString problem;
    for (int i = 0; i < rounds && problem.isEmpty(); ++i) {
        Round round;
        problem = fetchAtOnce(sites, model, 1, round);
        figures.append(round.bytes);
    }
    bytes = Measuring::median(figures);
    return problem;
}

QString number(double value)
{
    return QString::number(value, 'f', value < 10 ? 2 : value < 100 ? 1 : 0);
}

QString needsText(const ServingCosts &costs)
{
    QString text;
    QTextStream stream(&text);
    ServingLoad load;
    stream << "A million updates a day; peak " << load.peakFactor << " times the mean, users with "
           << load.userMegabits << " Mbit/s, " << load.models << " models with " << load.imagesPerModel
           << " images each, " << load.edges << " caching servers:\n\n"
           << "| image | TB a day | Gbit/s mean, peak | requests a second mean, peak | processors mean, peak "
              "| downloads at once, memory | cache | from the origin |\n|---|---|---|---|---|---|---|---|\n";
    for (const double mebibytes : {8.0, 32.0, 128.0}) {
        load.imageMebibytes = mebibytes;
        const ServingNeeds needs = ServingNeeds::of(costs, load);
        const auto both = [&needs](double mean) {
            return number(mean) + QStringLiteral(", ") + number(needs.peak(mean));
        };
        stream << "| " << mebibytes << " MiB | " << number(needs.terabytesPerDay) << " | "
               << both(needs.meanGigabits) << " | " << both(needs.meanRequestsPerSecond) << " | "
               << both(needs.meanProcessors) << " | " << number(needs.downloadsAtPeak) << ", "
               << number(needs.memoryGibibytesAtPeak) << " GiB | " << number(needs.cacheGibibytes)
               << " GiB | " << number(needs.originGibibytes) << " GiB |\n";
    }
    stream << "\nOne caching server with " << processors << " processors and 10 Gbit/s:\n\n"
           << "| image | updates a second, line | updates a second, processors | first at its limit |\n"
              "|---|---|---|---|\n";
    for (const double mebibytes : {8.0, 32.0, 128.0}) {
        const ServingLimits limits = ServingLimits::of(costs, mebibytes, 10, processors);
        stream << "| " << mebibytes << " MiB | " << number(limits.byLine) << " | "
               << number(limits.byProcessors) << " | "
               << (limits.isLineFirst() ? "the line" : "the processors") << " |\n";
    }
    return text;
}

void addRows(BenchContext &context, const Round &cold, const Round &warm, const ServingCosts &costs,
             const QVector<ServedRequest> &origin)
{
    Results &results = context.results;
    const double image = crowdMebibytes * mebibyte;
    const QString peer = QStringLiteral("-");
    const double fromOrigin = double(ServedRequests::bodyBytes(imageRequests(origin))) / image;
    results.add(
        {QStringLiteral("%1 clients at once, empty cache, %2 MiB: image bytes from the origin per byte")
             .arg(crowd)
             .arg(crowdMebibytes),
         QString::number(fromOrigin, 'f', 4), peer,
         QStringLiteral("%1 requests, %2 s").arg(origin.size()).arg(number(cold.seconds)),
         QStringLiteral("1"), fromOrigin == 1});
    results.add({QStringLiteral("Requests of an update"), number(costs.requests), peer,
                 QStringLiteral("%1 repeated in %2 updates").arg(warm.results.retries).arg(few),
                 QStringLiteral("12"), costs.requests == 12});
    results.add(
        {QStringLiteral("Bytes on the line of an update (TLS, both directions)"),
         QStringLiteral("%1 per byte + %2 KiB")
             .arg(costs.bytesPerByte, 0, 'f', 4)
             .arg(number(costs.fixedBytes / 1024)),
         peer,
         QStringLiteral("%1 of 32 MiB")
             .arg(1 / mebibyte / 32 * (costs.fixedBytes + costs.bytesPerByte * 32 * mebibyte), 0, 'f', 4),
         QStringLiteral("<= 1.01 of 32 MiB"),
         costs.fixedBytes + costs.bytesPerByte * 32 * mebibyte <= 1.01 * 32 * mebibyte});
    results.add(
        {QStringLiteral("Updates a second, %1 MiB, clients on the same processors").arg(largeMebibytes),
         number(few / warm.seconds), peer,
         QStringLiteral("median of a client %1 s").arg(number(Measuring::median(warm.results.tookMs) / 1000)),
         QString(), true});
    results.add({QStringLiteral("Processor time of the caching server for an update"),
                 QStringLiteral("%1 ms + %2 ms per MiB")
                     .arg(number(costs.fixedProcessorMs), number(costs.processorMsPerMebibyte)),
                 peer,
                 QStringLiteral("%1 updates a second on %2 processors at %3 MiB")
                     .arg(number(ServingLimits::of(costs, largeMebibytes, 10, processors).byProcessors))
                     .arg(processors)
                     .arg(largeMebibytes),
                 QString(), true});
    results.add({QStringLiteral("Memory of the caching server, %1 downloads at once").arg(crowd),
                 Measuring::mebibytes(cold.peakKibibytes), peer,
                 QStringLiteral("%1 KiB for each").arg(number(costs.kibibytesPerDownload)), QString(), true});
    results.addText(needsText(costs));
}

} // namespace

QString Subjects::serve(BenchContext &context)
{
    EdgeAndOrigin sites;
    EdgeAndOrigin::Options options;
    options.workers = processors;
    const QString file = context.folder + QStringLiteral("/image");
    const auto addImage = [&](const QString &model, int mebibytes) {
        return Measuring::makeFile(file, mebibytes) && sites.addModel(model, WholeFile::read(file));
    };
    const QString crowdModel = QStringLiteral("DevMaa");
    const QString smallModel = QStringLiteral("DevMab");
    const QString largeModel = QStringLiteral("DevMac");
    if (!addImage(crowdModel, crowdMebibytes) || !addImage(smallModel, smallMebibytes) ||
        !addImage(largeModel, largeMebibytes) || !sites.start(options))
        return sites.errorText();
    const double idleKibibytes = kibibytes(edgeProcesses(sites));

    Round cold;
    QString problem = fetchAtOnce(sites, crowdModel, crowd, cold);
    const QVector<ServedRequest> origin = sites.originRequests();
    // The first round with each image fills the cache.
    struct Measured
    {
        QString model;
        int mebibytes;
        Round round;
        ServingCosts::Sample sample;
    };
    Measured small{smallModel, smallMebibytes, {}, {}};
    Measured large{largeModel, largeMebibytes, {}, {}};
    for (Measured *measured : {&small, &large}) {
        for (int i = 0; i < 2 && problem.isEmpty(); ++i)
            problem = fetchAtOnce(sites, measured->model, few, measured->round);
        double bytes = 0;
        if (problem.isEmpty())
            problem = measureBytes(sites, measured->model, context.rounds, bytes);
        measured->sample = {double(measured->mebibytes), bytes, measured->round.processorMs / few};
    }
    if (!problem.isEmpty())
        return problem + sites.errorLogs();

    ServingCosts costs = ServingCosts::of(small.sample, large.sample);
    costs.requests = double(large.round.requests.size()) / few;
    costs.kibibytesPerDownload = std::max(0.0, cold.peakKibibytes - idleKibibytes) / crowd;
    context.results.addFigures(QStringLiteral("serve/clients ms"), large.round.results.tookMs);
    addRows(context, cold, large.round, costs, origin);
    return {};
}
