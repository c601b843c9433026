#pragma once

#include <QByteArray>

#include <optional>

/// What one answer offers, read by rules that are stricter and simpler than a client's: an answer that leaves
/// room for interpretation is irregular.
struct OfferedBody
{
    /// False for an answer of which two clients might think differently. The rest then means nothing.
    bool isRegular = false;
    int status = 0;
    /// The decoded body, as far as it was sent.
    QByteArray body;
    /// Whether all of it was sent.
    bool isWhole = false;
    /// Whether the body is encoded, or holds several parts.
    bool isEncoded = false;
    bool isMultipart = false;
    /// Of "Content-Range": position of the first byte, end (exclusive), size of the file if it is given.
    std::optional<qint64> first;
    qint64 end = 0;
    std::optional<qint64> total;

    bool isSuccess() const { return status >= 200 && status < 300; }
    bool isPart() const { return status == 206; }
    /// The byte at this position of the file, if the answer offers it.
    std::optional<char> byteAt(qint64 position) const;

    /// `closes`: whether the connection is closed behind the last byte.
    static OfferedBody read(const QByteArray &answer, bool closes);
};
