#pragma once

#include <QByteArray>
#include <QMap>

#include <optional>

/// One request as it came over the wire.
struct ServerRequest
{
    QByteArray method;
    /// Path without query.
    QByteArray path;
    /// Values by lower-case name.
    QMap<QByteArray, QByteArray> headers;
    /// When it was complete, in milliseconds of a steady clock.
    qint64 atMs = 0;

    /// The value of a header, in whatever case it is asked for; empty when it was not sent.
    QByteArray header(const QByteArray &name) const { return headers.value(name.toLower()); }

    /// Parses the head of a request, without its closing empty line; nothing when it is no HTTP.
    static std::optional<ServerRequest> parse(const QByteArray &head);
};

/// The bytes that a "Range" header asks for: `last` is inclusive, and -1 stands for the file's end.
struct RequestedRange
{
    qint64 first = 0;
    qint64 last = -1;

    /// Only "bytes=a-b" and "bytes=a-" are understood; anything else is as good as no header.
    static std::optional<RequestedRange> parse(const QByteArray &header);
};
