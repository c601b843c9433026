#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

/// Facts about files for a report, without their contents. May be called from any thread.
namespace FileFacts {

/// The largest file, in bytes, whose sum is computed.
constexpr qint64 maximumHashedBytes = qint64{64} * 1024 * 1024;

/// Returns the path of a file, its size and its SHA-256 sum; size and sum are null if there is no such file.
/// Ends early when the program is told to end.
QJsonObject of(const QString &path);

/// Returns the names and sizes of at most 100 entries of a folder and its subfolders.
QJsonArray contentsOf(const QString &folder);

} // namespace FileFacts
