#include "simulator/server/ServerRequest.h"

#include <QDeadlineTimer>
#include <QList>

std::optional<ServerRequest> ServerRequest::parse(const QByteArray &head)
{
    const QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> start = lines.first().trimmed().split(' ');
    if (start.size() != 3 || !start.at(2).startsWith("HTTP/1."))
        return std::nullopt;
    ServerRequest request;
    request.method = start.at(0);
    request.path = start.at(1).split('?').first();
    for (int i = 1; i < lines.size(); ++i) {
        const int colon = lines.at(i).indexOf(':');
        if (colon > 0)
            request.headers.insert(lines.at(i).left(colon).trimmed().toLower(),
                                   lines.at(i).mid(colon + 1).trimmed());
    }
    request.atMs = QDeadlineTimer::current(Qt::PreciseTimer).deadline();
    return request;
}

std::optional<RequestedRange> RequestedRange::parse(const QByteArray &header)
{
    if (!header.startsWith("bytes="))
        return std::nullopt;
    const QList<QByteArray> ends = header.mid(6).split('-');
    if (ends.size() != 2)
        return std::nullopt;
    RequestedRange range;
    bool isNumber = false;
    range.first = ends.at(0).toLongLong(&isNumber);
    if (!isNumber)
        return std::nullopt;
    if (!ends.at(1).isEmpty()) {
        range.last = ends.at(1).toLongLong(&isNumber);
        if (!isNumber || range.last < range.first)
            return std::nullopt;
    }
    return range;
}
