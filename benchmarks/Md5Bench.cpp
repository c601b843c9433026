#include "benchmarks/Measuring.h"
#include "benchmarks/Subjects.h"

QString Subjects::md5(BenchContext &context)
{
    const QString file = context.folder + QLatin1String("/gibibyte");
    if (!Measuring::makeFile(file, 1024))
        return QStringLiteral("cannot make the file");
    const QStringList oursCommand{Measuring::program("quillmarsh-bench-md5"), file};
    const QStringList peerCommand{QStringLiteral("md5sum"), file};
    QVector<double> ours;
    QVector<double> peer;
    for (int round = 0; round < context.rounds; ++round) {
        QString error;
        QByteArray ourSum;
        QByteArray peerSum;
        ours.append(Measuring::runTimed(oursCommand, context.folder, &error, &ourSum));
        peer.append(Measuring::runTimed(peerCommand, context.folder, &error, &peerSum));
        if (ours.last() < 0 || peer.last() < 0)
            return error;
        if (ourSum.size() < 32 || ourSum.left(32) != peerSum.left(32))
            return QStringLiteral("the sums differ");
    }
    context.results.addFigures(QStringLiteral("md5/ours ms"), ours);
    context.results.addFigures(QStringLiteral("md5/md5sum ms"), peer);
    const double ratio = Measuring::median(ours) / Measuring::median(peer);
    context.results.add({QStringLiteral("MD5 of 1 GiB"), Measuring::milliseconds(Measuring::median(ours)),
                         QStringLiteral("md5sum %1").arg(Measuring::milliseconds(Measuring::median(peer))),
                         Measuring::times(ratio), QStringLiteral("<= 1.1 x"), ratio <= 1.1});
    return QString();
}
