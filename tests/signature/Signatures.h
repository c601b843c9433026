#pragma once

#include "simulator/files/WholeFile.h"

#include <QByteArray>
#include <QString>

/// Access to the files created by make-signatures.sh.
namespace Signatures {

inline QString path(const char *name)
{
    return QStringLiteral(SIGNATURES "/") + QLatin1String(name);
}

/// Returns the text of a signature.
inline QByteArray text(const char *name)
{
    return WholeFile::read(path(name) + QLatin1String(".minisig"));
}

/// Returns a public key: the second line of its file.
inline QByteArray key(const char *name)
{
    return WholeFile::read(path(name) + QLatin1String(".pub")).split('\n').value(1).trimmed();
}

/// Returns the text with one line replaced, counted from 0.
inline QByteArray withLine(const QByteArray &text, int index, const QByteArray &line)
{
    QList<QByteArray> lines = text.split('\n');
    lines[index] = line;
    return lines.join('\n');
}

/// Returns a line of base64 in which one bit of a byte of the content is changed.
inline QByteArray withChangedByte(const QByteArray &line, int index)
{
    QByteArray bytes = QByteArray::fromBase64(line);
    bytes[index] = static_cast<char>(bytes[index] ^ 1);
    return bytes.toBase64();
}

} // namespace Signatures
