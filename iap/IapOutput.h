#pragma once

#include <QString>

#include <optional>

/// What one chunk of the IAP programmer's output means. A chunk is whatever one read returned: it
/// may hold several lines or a part of one, and only its first report counts.
struct IapChunk
{
    /// In percent.
    std::optional<int> progress;
    /// The programmer reported 100: the device is programmed, and the programmer may go.
    bool finished = false;
    /// The programmer does not find its device.
    bool failed = false;
};

IapChunk readIapChunk(const QString &text);
