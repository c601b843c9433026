#pragma once

#include <QByteArray>
#include <QMap>

#include <optional>

/// A request as it was received.
struct ServerRequest
{
    QByteArray method;
    /// The path without the query.
    QByteArray path;
    /// The values of the headers, by lower-case name.
    QMap<QByteArray, QByteArray> headers;
    /// The time at which the request was complete, in milliseconds of a monotonic clock.
    qint64 atMs = 0;

    /// Returns the value of a header, or an empty string if it was not sent. The case of `name` is ignored.
    QByteArray header(const QByteArray &name) const { return headers.value(name.toLower()); }

    /// Parses the headers of a request, without the empty line at the end. Returns nothing if they are not
    /// HTTP.
    static std::optional<ServerRequest> parse(const QByteArray &head);
};

/// The bytes that a "Range" header requests; `last` is inclusive, and -1 means the end of the file.
struct RequestedRange
{
    qint64 first = 0;
    qint64 last = -1;

    /// Parses "bytes=a-b" and "bytes=a-". Returns nothing for all other values, as if there were no header.
    static std::optional<RequestedRange> parse(const QByteArray &header);
};
