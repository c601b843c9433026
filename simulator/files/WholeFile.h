#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

/// Reads or writes whole files.
namespace WholeFile {

/// Returns the contents of the file, or `otherwise` if it cannot be read.
inline QByteArray read(const QString &path, const QByteArray &otherwise = {})
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : otherwise;
}

/// Replaces the contents of the file. Returns false if not all bytes could be written.
inline bool write(const QString &path, const QByteArray &contents = {})
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size() && file.flush();
}

} // namespace WholeFile
