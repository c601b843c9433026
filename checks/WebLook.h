#pragma once

#include "download/SegmentRanges.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// What came of one request.
struct WebAnswer
{
    /// HTTP status; 0 if nothing answered.
    int status = 0;
    /// Why the answer is not what was asked for, in a few words; empty if it is.
    QString problem;
    QByteArray contentRange;
    std::optional<qint64> contentLength;
    /// Only of fetch().
    QByteArray body;
};

/// Single requests, as the downloads make them, that end in time. Each runs a local event loop on the calling
/// thread and ends early when the program is told to end.
namespace WebLook {

/// The limit of every request that a command makes.
constexpr int limitMs = 10000;

/// Returns whether `address` is one of http or https with a host.
bool isAddress(const QString &address);

/// Fetches a small file, at most as large as a manifest may be.
WebAnswer fetch(const QString &address, int limit = limitMs);

/// Asks for the file, or for `part` of it, and returns the head of the answer without waiting for its body.
WebAnswer head(const QString &address, const std::optional<SegmentRange> &part, int limit = limitMs);

} // namespace WebLook
