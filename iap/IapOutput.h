#pragma once

#include <QString>

#include <optional>

/// The meaning of one chunk of the IAP programmer's output. A chunk is the result of one read: several lines
/// or a part of one. Only its first report counts.
struct IapChunk
{
    /// In percent.
    std::optional<int> progress;
    /// Whether the programmer reported 100: the device is programmed and the programmer may be ended.
    bool finished = false;
    /// Whether the programmer did not find its device.
    bool failed = false;
};

/// Returns whether output that was joined from several chunks reports 100.
bool reportsSuccess(const QString &output);

/// Parses one chunk.
IapChunk readIapChunk(const QString &text);
