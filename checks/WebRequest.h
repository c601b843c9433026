#pragma once

#include "download/SegmentRanges.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// The answer to one request.
struct WebAnswer
{
    /// HTTP status; 0 if nothing answered.
    int status = 0;
    /// What is wrong with the answer, in a few words; empty if nothing is.
    QString problem;
    QByteArray contentRange;
    std::optional<qint64> contentLength;
    /// Set by fetch() only.
    QByteArray body;
};

/// Single requests with a time limit, otherwise like those of the downloads. Each runs a local event loop on
/// the calling thread and ends early when the program is told to end.
namespace WebRequest {

/// The usual limit.
constexpr int limitMs = 10000;

/// Returns whether `address` is an http or https address with a host.
bool isAddress(const QString &address);

/// Fetches a small file, at most as large as a manifest may be.
WebAnswer fetch(const QString &address, int limit = limitMs);

/// Requests the file, or `part` of it, and returns the headers of the answer without waiting for its body.
WebAnswer head(const QString &address, const std::optional<SegmentRange> &part, int limit = limitMs);

} // namespace WebRequest
