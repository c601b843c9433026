#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

/// A request from the access log that site-configuration.sh configures.
struct ServedRequest
{
    int status = 0;
    /// The bytes of the body, and of the whole response.
    qint64 bodyBytes = 0;
    qint64 bytes = 0;
    /// The header "Range"; empty if there was none.
    QString range;
    QString path;

    /// Returns the requests in the lines. Lines with another format, such as an incomplete last one, are
    /// skipped.
    static QVector<ServedRequest> parse(const QByteArray &log);
};

/// Sums over requests.
namespace ServedRequests {

/// Returns the requests whose path ends in `suffix`.
QVector<ServedRequest> ending(const QVector<ServedRequest> &requests, const QString &suffix);
qint64 bodyBytes(const QVector<ServedRequest> &requests);
qint64 bytes(const QVector<ServedRequest> &requests);
/// Returns how many requests have a range, or none.
int withRange(const QVector<ServedRequest> &requests, bool hasRange);

} // namespace ServedRequests
