#pragma once

#include <QString>

#include <functional>

/// Finds a connected device whose ids (vendor, product) `isOurs` accepts and whose device file this user may
/// not open. Returns that file, or an empty text; always an empty text on Windows, which has no device files.
/// Does not open the file.
QString findRefusedDeviceFile(const std::function<bool(quint32, quint32)> &isOurs);
