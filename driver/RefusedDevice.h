#pragma once

#include <QString>

#include <functional>

/// Looks for a connected device with ids that `isOurs` accepts (vendor, product) whose file this user
/// may not open, and returns that file; empty when there is none, and where device files have no
/// owners. Opens nothing.
QString refusedDeviceFile(const std::function<bool(quint32, quint32)> &isOurs);
