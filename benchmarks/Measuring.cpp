#include "benchmarks/Measuring.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <random>

namespace {

constexpr int commandLimitMs = 30 * 60 * 1000;

} // namespace

double Measuring::runTimed(const QStringList &command, const QString &folder, QString *error,
                           QByteArray *output)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.setStandardErrorFile(folder + QLatin1String("/stderr"));
    if (!output)
        process.setStandardOutputFile(QProcess::nullDevice());
    const double start = steadyMs();
    process.start(command.value(0), command.mid(1));
    const bool ended = process.waitForFinished(commandLimitMs);
    const double taken = steadyMs() - start;
    if (output)
        *output = process.readAllStandardOutput();
    if (ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return taken;
    QFile errors(folder + QLatin1String("/stderr"));
    const bool isOpen = errors.open(QIODevice::ReadOnly);
    *error = command.value(0) + QLatin1String(": ") + process.errorString() + QLatin1Char(' ') +
             QString::fromUtf8(isOpen ? errors.readAll().right(500) : QByteArray());
    return -1;
}

QString Measuring::program(const char *name)
{
    return QCoreApplication::applicationDirPath() + QLatin1Char('/') + QLatin1String(name);
}

double Measuring::median(QVector<double> figures)
{
    if (figures.isEmpty())
        return 0;
    std::sort(figures.begin(), figures.end());
    const int middle = figures.size() / 2;
    return figures.size() % 2 ? figures.at(middle) : (figures.at(middle - 1) + figures.at(middle)) / 2;
}

double Measuring::percentile(QVector<double> figures, double share)
{
    if (figures.isEmpty())
        return 0;
    std::sort(figures.begin(), figures.end());
    const int rank = static_cast<int>(std::ceil(share * figures.size())) - 1;
    return figures.at(std::clamp(rank, 0, figures.size() - 1));
}

double Measuring::steadyMs()
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

bool Measuring::sameBytes(const QString &left, const QString &right)
{
    QFile one(left);
    QFile other(right);
    if (!one.open(QIODevice::ReadOnly) || !other.open(QIODevice::ReadOnly) || one.size() != other.size())
        return false;
    while (!one.atEnd()) {
        const QByteArray block = one.read(1 << 20);
        if (block.isEmpty() || block != other.read(1 << 20))
            return false;
    }
    return true;
}

bool Measuring::makeFile(const QString &path, int mebibytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    std::mt19937_64 engine(1);
    QByteArray block(1 << 20, Qt::Uninitialized);
    for (int i = 0; i < mebibytes; ++i) {
        for (int at = 0; at < block.size(); at += 8) {
            const quint64 number = engine();
            std::memcpy(block.data() + at, &number, sizeof number);
        }
        if (file.write(block) != block.size())
            return false;
    }
    return file.flush();
}

QString Measuring::milliseconds(double value)
{
    return QString::number(value, 'f', value < 100 ? 2 : 0) + QLatin1String(" ms");
}

QString Measuring::mebibytes(double kibibytes)
{
    return QString::number(kibibytes / 1024, 'f', 1) + QLatin1String(" MiB");
}

QString Measuring::times(double ratio)
{
    return QString::number(ratio, 'f', 3);
}
