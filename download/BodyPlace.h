#pragma once

#include <QString>

#include <optional>

class QNetworkReply;

/// The position of a response's body in the remote file, and the usable part of the body.
struct BodyPlace
{
    /// The position of the body's first byte.
    qint64 position = 0;
    /// The end (exclusive) of the requested bytes, and that of the bytes that the body can provide: the
    /// response may state an earlier one. 0 or less if they are not known.
    qint64 wantedEnd = 0;
    qint64 usableEnd = 0;
    /// Why the body is not what was requested, in a few words for the log; empty if it is. If this is set,
    /// the body must not be used.
    QString problem;

    /// Returns the place of the body of `reply`, whose headers have arrived. `asked` is the first requested
    /// byte, or nothing if the whole file was requested; `end` is the end (exclusive) of the range, or 0 or
    /// less for the end of the file.
    static BodyPlace of(const QNetworkReply &reply, std::optional<qint64> asked, qint64 end);
};
