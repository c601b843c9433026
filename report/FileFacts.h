#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

/// What a report tells of files. None of their contents is kept. May be called from any thread.
namespace FileFacts {

/// Files above this size, in bytes, get no hash.
constexpr qint64 largestHashed = qint64{64} * 1024 * 1024;

/// Returns the path of a file, its size and its SHA-256 sum; both are null if there is no such file. Ends
/// early when the program is told to end.
QJsonObject of(const QString &path);

/// Returns names and sizes of what lies in a folder and in the folders in it, at most 100 of them.
QJsonArray contentsOf(const QString &folder);

} // namespace FileFacts
