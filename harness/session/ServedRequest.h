#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

/// One line of the access log that site-configuration.sh asks for.
struct ServedRequest
{
    int status = 0;
    /// Bytes of the body, and of the whole answer.
    qint64 bodyBytes = 0;
    qint64 bytes = 0;
    /// The header "Range"; empty when there was none.
    QString range;
    QString path;

    /// Returns the lines' requests. Lines that are not of that form, such as an unfinished last one, are left
    /// out.
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
