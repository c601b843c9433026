#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// Measures time and memory of other processes and evaluates the figures.
namespace Measuring {

/// Runs a command in `folder` and returns the milliseconds from its start to its end. Returns a negative
/// number and sets `*error` if it failed. Stores its standard output in `*output` unless that is null.
double runTimed(const QStringList &command, const QString &folder, QString *error,
                QByteArray *output = nullptr);

/// Returns the path of a program in the folder of this one.
QString program(const char *name);

double median(QVector<double> figures);
/// Returns the figure that a `share` (0 to 1) of all figures does not exceed.
double percentile(QVector<double> figures, double share);

/// Returns the milliseconds of the system's steady clock, which is the same in all processes.
double steadyMs();

/// Memory of a process in KiB; 0 if it cannot be read.
struct Memory
{
    qint64 rss = 0;
    qint64 pss = 0;
    /// The highest RSS since resetPeak().
    qint64 peak = 0;
};
Memory memoryOf(qint64 processId);
/// Resets the peak of a process. Returns false if the system does not permit it.
bool resetPeak(qint64 processId);
/// Returns the running processes that a process has started.
QVector<qint64> childrenOf(qint64 processId);
/// Returns the processor time that a process has used so far, in milliseconds; -1 if the process has ended.
double processorMs(qint64 processId);

/// Returns the bytes of TCP payload that a network device has received so far: all bytes less the 52 bytes of
/// headers of each packet. Returns 0 if there is no such device.
double receivedPayload(const char *networkDevice);

/// Returns whether two files contain the same bytes.
bool sameBytes(const QString &left, const QString &right);
/// Makes a file of `mebibytes` of random bytes that are the same each time.
bool makeFile(const QString &path, int mebibytes);

QString milliseconds(double value);
QString mebibytes(double kibibytes);
QString times(double ratio);

} // namespace Measuring
