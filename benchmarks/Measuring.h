#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// Time and memory of other processes, and what is made of many figures.
namespace Measuring {

/// Milliseconds from the start of a command to its end; negative when it failed, and then `error`
/// tells why. What it prints on standard output is put into `output` (may be null).
double runTimed(const QStringList &command, const QString &folder, QString *error,
                QByteArray *output = nullptr);

/// A program that lies beside this one.
QString program(const char *name);

double median(QVector<double> figures);
/// The figure that `share` (0 to 1) of all figures do not exceed.
double percentile(QVector<double> figures, double share);

/// Milliseconds of the system's steady clock, which all processes share.
double steadyMs();

/// Memory of a process in KiB; 0 when it cannot be read.
struct Memory
{
    qint64 rss = 0;
    qint64 pss = 0;
    /// The highest RSS since forgetPeak().
    qint64 peak = 0;
};
Memory memoryOf(qint64 processId);
/// False where the system does not permit it.
bool forgetPeak(qint64 processId);
/// The processes that a process has started and that still run.
QVector<qint64> childrenOf(qint64 processId);
/// Processor time that a process has used so far, in milliseconds; -1 when it is gone.
double processorMs(qint64 processId);

/// Whether two files hold the same bytes.
bool sameBytes(const QString &left, const QString &right);
/// Makes a file of `mebibytes` that does not compress and is the same each time.
bool makeFile(const QString &path, int mebibytes);

QString milliseconds(double value);
QString mebibytes(double kibibytes);
QString times(double ratio);

} // namespace Measuring
