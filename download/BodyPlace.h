#pragma once

#include <QString>

#include <optional>

class QNetworkReply;

/// Where the body of an answer belongs in the remote file, and how much of it may be used.
struct BodyPlace
{
    /// Position of the body's first byte.
    qint64 position = 0;
    /// End (exclusive) of what is wanted, and of what the body may be used for: the answer can name an
    /// earlier one. 0 or less when they are not known.
    qint64 wantedEnd = 0;
    qint64 usableEnd = 0;
    /// Why the body cannot be what was asked for, in a few words for the log; empty when it can. Nothing of
    /// it may be used then.
    QString problem;

    /// Places the body of `reply`, whose head has arrived. `asked` is the first byte that was asked for, or
    /// nothing when the whole file was; `end` is the end (exclusive) of the range, or 0 or less for that of
    /// the file.
    static BodyPlace of(const QNetworkReply &reply, std::optional<qint64> asked, qint64 end);
};
