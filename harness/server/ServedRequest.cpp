#include "harness/server/ServedRequest.h"

#include <QRegularExpression>

#include <algorithm>
#include <numeric>

QVector<ServedRequest> ServedRequest::parse(const QByteArray &log)
{
    static const QRegularExpression form(QStringLiteral("^(\\d+) (\\d+) (\\d+) \"([^\"]*)\" (\\S+)$"),
                                         QRegularExpression::MultilineOption);
    QVector<ServedRequest> requests;
    // The text after the last line feed may be an incomplete line.
    auto lines = form.globalMatch(QString::fromUtf8(log.left(log.lastIndexOf('\n') + 1)));
    while (lines.hasNext()) {
        const QRegularExpressionMatch line = lines.next();
        ServedRequest request;
        request.status = line.captured(1).toInt();
        request.bodyBytes = line.captured(2).toLongLong();
        request.bytes = line.captured(3).toLongLong();
        if (line.captured(4) != QLatin1String("-"))
            request.range = line.captured(4);
        request.path = line.captured(5);
        requests.append(request);
    }
    return requests;
}

QVector<ServedRequest> ServedRequests::ending(const QVector<ServedRequest> &requests, const QString &suffix)
{
    QVector<ServedRequest> found;
    std::copy_if(requests.begin(), requests.end(), std::back_inserter(found),
                 [&](const ServedRequest &request) { return request.path.endsWith(suffix); });
    return found;
}

qint64 ServedRequests::bodyBytes(const QVector<ServedRequest> &requests)
{
    return std::accumulate(requests.begin(), requests.end(), qint64(0),
                           [](qint64 sum, const ServedRequest &request) { return sum + request.bodyBytes; });
}

qint64 ServedRequests::bytes(const QVector<ServedRequest> &requests)
{
    return std::accumulate(requests.begin(), requests.end(), qint64(0),
                           [](qint64 sum, const ServedRequest &request) { return sum + request.bytes; });
}

int ServedRequests::withRange(const QVector<ServedRequest> &requests, bool hasRange)
{
    return static_cast<int>(
        std::count_if(requests.begin(), requests.end(),
                      [&](const ServedRequest &request) { return request.range.isEmpty() != hasRange; }));
}
