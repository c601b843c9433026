#pragma once

#include <QByteArray>

#include <optional>

/// The contents of an answer, parsed with stricter and simpler rules than those of a client: an ambiguous
/// answer is irregular.
struct OfferedBody
{
    /// False if clients may interpret the answer differently. The other members are then meaningless.
    bool isRegular = false;
    int status = 0;
    /// The decoded body, as far as it was sent.
    QByteArray body;
    /// Whether the whole body was sent.
    bool isWhole = false;
    /// Whether the body is encoded or contains several parts.
    bool isEncoded = false;
    bool isMultipart = false;
    /// From "Content-Range": the position of the first byte, the end (exclusive), and the size of the file if
    /// there is one.
    std::optional<qint64> first;
    qint64 end = 0;
    std::optional<qint64> total;

    bool isSuccess() const { return status >= 200 && status < 300; }
    bool isPart() const { return status == 206; }
    /// Returns the byte at this position of the file, if the answer contains it.
    std::optional<char> byteAt(qint64 position) const;

    /// Parses an answer. `closes` is whether the connection is closed after the last byte.
    static OfferedBody read(const QByteArray &answer, bool closes);
};
