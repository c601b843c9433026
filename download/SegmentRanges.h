#pragma once

#include <QByteArray>
#include <QList>

/// One segment of a file: first byte and end (exclusive). An end of 0 stands for the whole file.
struct SegmentRange
{
    qint64 start = 0;
    qint64 end = 0;
};

/// Cuts `size` bytes into `count` ranges of size / count bytes; the last one takes the remainder, too.
///
/// Starts are 64-bit, but ends are carried in 32 bits, each one being the previous one plus the part
/// size, and wrap as two's complement: files of 2 GiB and more are not supported. A file of
/// fewer bytes than segments gives ends of 0 for all but the last. A count below 1 gives no range.
QList<SegmentRange> cutIntoRanges(qint64 size, int count);

/// "bytes=first-last" for the bytes from `first` up to `end` (exclusive).
QByteArray rangeHeader(qint64 first, qint64 end);
/// "bytes=first-" for the bytes from `first` to the file's end.
QByteArray openRangeHeader(qint64 first);
