#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

/// Files that are read or written at once.
namespace WholeFile {

/// The file's bytes, or `otherwise` when it cannot be read.
inline QByteArray read(const QString &path, const QByteArray &otherwise = {})
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : otherwise;
}

/// Replaces what was there before. False when the bytes are not all in the file.
inline bool write(const QString &path, const QByteArray &contents = {})
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size() && file.flush();
}

} // namespace WholeFile
