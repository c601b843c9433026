#pragma once

#include <QString>

#include <optional>

/// What one chunk of the IAP programmer's output means. A chunk is the result of one read: several lines or a
/// part of one. Only its first report counts.
struct IapChunk
{
    /// In percent.
    std::optional<int> progress;
    /// The programmer reported 100: the device is programmed and the programmer may end.
    bool finished = false;
    /// The programmer did not find its device.
    bool failed = false;
};

/// Returns whether output that was put together from several chunks reports 100.
bool reportsSuccess(const QString &output);

/// Parses one chunk.
IapChunk readIapChunk(const QString &text);
