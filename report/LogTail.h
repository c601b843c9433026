#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// The end of a log: what happened last.
namespace LogTail {

constexpr int maximumLines = 2000;
constexpr qint64 maximumBytes = qint64{1024} * 1024;

/// Returns the last whole lines of `bytes`, without their ends. `isCut` tells that the bytes begin somewhere
/// in a line. What is no UTF-8 is replaced.
QStringList linesOf(const QByteArray &bytes, bool isCut);

/// The log as a report holds it.
struct Tail
{
    /// In bytes; -1 if there is no such file or it cannot be read.
    qint64 size = -1;
    QStringList lines;
};

/// Reads the end of the file. Never blocks: what is no plain file counts as one that cannot be read.
Tail read(const QString &path);

} // namespace LogTail
