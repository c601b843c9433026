#include "tests/fuzz/OfferedBody.h"

#include <QHash>
#include <QRegularExpression>

namespace {

QRegularExpressionMatch match(const char *pattern, const QByteArray &text)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(QString::fromLatin1(pattern)))
        .match(QString::fromLatin1(text.constData(), text.size()));
}

/// Parses a decimal number that is small enough for all clients.
std::optional<qint64> smallNumber(const QByteArray &text)
{
    if (!match("[0-9]{1,9}", text).hasMatch())
        return std::nullopt;
    return text.toLongLong();
}

/// Returns the headers by lower-case name, or nothing if one is duplicated or malformed.
std::optional<QHash<QByteArray, QByteArray>> readHeaders(const QList<QByteArray> &lines)
{
    QHash<QByteArray, QByteArray> headers;
    for (const QByteArray &line : lines) {
        const auto found = match("([A-Za-z0-9-]+): ?([!-~]([ -~]*[!-~])?)?", line);
        const QByteArray name = found.captured(1).toLatin1().toLower();
        if (!found.hasMatch() || headers.contains(name))
            return std::nullopt;
        headers.insert(name, found.captured(2).toLatin1());
    }
    return headers;
}

/// Decodes chunks into `body`. Returns false if they are malformed or something follows the last one.
bool readChunks(QByteArray rest, OfferedBody &offered)
{
    while (true) {
        const int lineEnd = rest.indexOf("\r\n");
        if (lineEnd < 0)
            return match("[0-9a-fA-F]{0,4}\r?", rest).hasMatch();
        const QByteArray line = rest.left(lineEnd);
        if (!match("[0-9a-fA-F]{1,4}", line).hasMatch())
            return false;
        const int size = line.toInt(nullptr, 16);
        rest.remove(0, lineEnd + 2);
        if (size == 0) {
            offered.isWhole = rest == "\r\n";
            return offered.isWhole || rest.isEmpty() || rest == "\r";
        }
        offered.body += rest.left(size);
        const QByteArray ending = rest.mid(size, 2);
        if (!QByteArray("\r\n").startsWith(ending))
            return false;
        if (ending.size() < 2)
            return true;
        rest.remove(0, size + 2);
    }
}

bool readContentRange(const QByteArray &value, OfferedBody &offered)
{
    const auto found = match("bytes ([0-9]{1,9})-([0-9]{1,9})/([0-9]{1,9}|\\*)", value);
    if (!found.hasMatch())
        return false;
    offered.first = found.captured(1).toLongLong();
    offered.end = found.captured(2).toLongLong() + 1;
    if (found.captured(3) != QLatin1String("*"))
        offered.total = found.captured(3).toLongLong();
    return true;
}

} // namespace

std::optional<char> OfferedBody::byteAt(qint64 position) const
{
    if (!isSuccess() || isEncoded || isMultipart)
        return std::nullopt;
    const qint64 index = isPart() ? position - *first : position;
    if (index < 0 || index >= body.size() || (isPart() && position >= end))
        return std::nullopt;
    return body.at(static_cast<int>(index));
}

OfferedBody OfferedBody::read(const QByteArray &answer, bool closes)
{
    OfferedBody offered;
    const int headEnd = answer.indexOf("\r\n\r\n");
    if (headEnd < 0 || answer.left(headEnd).contains('\0'))
        return offered;
    QList<QByteArray> lines;
    const QString head = QString::fromLatin1(answer.left(headEnd));
    const QStringList texts = head.split(QStringLiteral("\r\n"));
    for (const QString &text : texts)
        lines.append(text.toLatin1());
    const auto status = match("HTTP/1\\.1 ([2-5][0-9][0-9]) [A-Za-z ]*", lines.takeFirst());
    const auto headers = readHeaders(lines);
    if (!status.hasMatch() || !headers)
        return offered;
    offered.status = status.captured(1).toInt();
    if (offered.status == 204 || offered.status == 304)
        return offered; // some clients read their bodies, others do not

    const QByteArray rest = answer.mid(headEnd + 4);
    const QByteArray encoding = headers->value("content-encoding");
    offered.isEncoded = !encoding.isEmpty() && encoding != "identity";
    offered.isMultipart = headers->value("content-type").toLower().startsWith("multipart/");
    if (offered.isPart() && !offered.isMultipart &&
        !readContentRange(headers->value("content-range"), offered))
        return offered; // it may begin anywhere
    if (headers->contains("transfer-encoding")) {
        offered.isRegular = headers->value("transfer-encoding") == "chunked" && readChunks(rest, offered);
    } else if (headers->contains("content-length")) {
        const std::optional<qint64> length = smallNumber(headers->value("content-length"));
        offered.body = rest;
        offered.isWhole = length && rest.size() == *length;
        offered.isRegular = length && rest.size() <= *length;
    } else {
        offered.body = rest;
        offered.isWhole = closes;
        offered.isRegular = true;
    }
    return offered;
}
