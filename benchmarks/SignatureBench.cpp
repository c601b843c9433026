#include "benchmarks/Measuring.h"
#include "benchmarks/Subjects.h"

#include <QFile>

namespace {

/// Makes a key with minisign and signs the file with it. Returns the public key. If that failed, returns an
/// empty text and sets `*error`.
QString signFile(const QString &file, const QString &folder, QString *error)
{
    const QString secret = folder + QLatin1String("/key");
    const QString publicKey = folder + QLatin1String("/key.pub");
    const QStringList makeKey{QStringLiteral("minisign"),
                              QStringLiteral("-G"),
                              QStringLiteral("-W"),
                              QStringLiteral("-p"),
                              publicKey,
                              QStringLiteral("-s"),
                              secret};
    const QStringList sign{QStringLiteral("minisign"), QStringLiteral("-S"),
                           QStringLiteral("-s"),       secret,
                           QStringLiteral("-m"),       file,
                           QStringLiteral("-t"),       QStringLiteral("model:DevMaa version:1.4.2")};
    if (Measuring::runTimed(makeKey, folder, error) < 0 || Measuring::runTimed(sign, folder, error) < 0)
        return {};
    QFile key(publicKey);
    if (!key.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("minisign has left no public key");
        return {};
    }
    return QString::fromLatin1(key.readAll().split('\n').value(1).trimmed());
}

} // namespace

QString Subjects::signature(BenchContext &context)
{
    constexpr double goal = 1.2;
    const QString file = context.folder + QLatin1String("/image");
    if (!Measuring::makeFile(file, 256))
        return QStringLiteral("cannot make the file");
    QString error;
    const QString key = signFile(file, context.folder, &error);
    if (key.isEmpty())
        return error;
    const QStringList oursCommand{Measuring::program("quillmarsh-bench-signature"), file,
                                  file + QLatin1String(".minisig"), key};
    const QStringList peerCommand{QStringLiteral("b2sum"), file};
    QVector<double> ours;
    QVector<double> peer;
    for (int round = 0; round < context.rounds; ++round) {
        QByteArray verdict;
        QByteArray sum;
        ours.append(Measuring::runTimed(oursCommand, context.folder, &error, &verdict));
        peer.append(Measuring::runTimed(peerCommand, context.folder, &error, &sum));
        if (ours.last() < 0 || peer.last() < 0)
            return error;
        if (verdict.trimmed() != "valid" || sum.size() < 128)
            return QStringLiteral("nothing was verified: ") + QString::fromUtf8(verdict);
    }
    context.results.addFigures(QStringLiteral("signature/ours ms"), ours);
    context.results.addFigures(QStringLiteral("signature/b2sum ms"), peer);
    const double ratio = Measuring::median(ours) / Measuring::median(peer);
    context.results.add({QStringLiteral("signature of 256 MiB"),
                         Measuring::milliseconds(Measuring::median(ours)),
                         QStringLiteral("b2sum %1").arg(Measuring::milliseconds(Measuring::median(peer))),
                         Measuring::times(ratio), QStringLiteral("<= %1 x").arg(goal), ratio <= goal});
    return QString();
}
