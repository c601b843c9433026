#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// The end of a log.
namespace LogTail {

constexpr int maximumLines = 2000;
constexpr qint64 maximumBytes = qint64{1024} * 1024;

/// Returns the last whole lines of `bytes`, without their line ends. `isCut` says that the bytes may begin
/// within a line. Invalid UTF-8 is replaced.
QStringList linesOf(const QByteArray &bytes, bool isCut);

/// What a report contains of a log.
struct Tail
{
    /// In bytes; -1 if there is no such file or it cannot be read.
    qint64 size = -1;
    QStringList lines;
};

/// Reads the end of the file. Never blocks: anything but a regular file counts as unreadable.
Tail read(const QString &path);

} // namespace LogTail
