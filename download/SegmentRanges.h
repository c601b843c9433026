#pragma once

#include <QByteArray>
#include <QList>

/// A segment of a file: the first byte and the end (exclusive). An end of 0 means the whole file.
struct SegmentRange
{
    qint64 start = 0;
    qint64 end = 0;
};

/// Divides `size` bytes into `count` ranges of size / count bytes; the last one also contains the remainder.
///
/// Starts have 64 bits. Ends are computed in 32 bits, each as the previous one plus the part size, and wrap
/// as two's complement: files of 2 GiB and more are not supported. If there are fewer bytes than segments,
/// all ends except the last are 0. Returns no ranges for a count below 1.
QList<SegmentRange> cutIntoRanges(qint64 size, int count);

/// Returns "bytes=first-last" for the bytes from `first` up to `end` (exclusive).
QByteArray rangeHeader(qint64 first, qint64 end);
/// Returns "bytes=first-" for the bytes from `first` to the end of the file.
QByteArray openRangeHeader(qint64 first);
