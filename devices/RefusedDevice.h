#pragma once

#include <QString>

#include <functional>

/// Finds a connected device whose ids (vendor, product) `isOurs` accepts and whose device file this user may
/// not open. Returns the path of that file or an empty string; on Windows, which has no device files, always
/// an empty string. Does not open the file.
QString findRefusedDeviceFile(const std::function<bool(quint32, quint32)> &isOurs);
