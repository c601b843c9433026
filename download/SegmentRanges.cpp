#include "download/SegmentRanges.h"

QList<SegmentRange> cutIntoRanges(qint64 size, int count)
{
    QList<SegmentRange> ranges;
    if (count < 1)
        return ranges;
    const qint64 partSize = size / count;
    const qint64 remainder = size % count;
    quint32 end = 0; // unsigned, so that the overflow is defined
    for (int i = 0; i < count; ++i) {
        end += static_cast<quint32>(partSize);
        if (i == count - 1)
            end += static_cast<quint32>(remainder);
        ranges.append({i * partSize, static_cast<qint32>(end)});
    }
    return ranges;
}

QByteArray rangeHeader(qint64 first, qint64 end)
{
    return "bytes=" + QByteArray::number(first) + '-' + QByteArray::number(end - 1);
}

QByteArray openRangeHeader(qint64 first)
{
    return "bytes=" + QByteArray::number(first) + '-';
}
