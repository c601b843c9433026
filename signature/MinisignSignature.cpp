#include "signature/MinisignSignature.h"

#include "signature/MinisignKey.h"

#include <QList>

namespace {

const char *const untrustedPrefix = "untrusted comment: ";
const char *const trustedPrefix = "trusted comment: ";
const char *const modelPrefix = "model:";

/// Returns the four lines without their line ends; none if there are fewer or more.
QList<QByteArray> linesOf(const QByteArray &text)
{
    QList<QByteArray> lines = text.split('\n');
    for (QByteArray &line : lines) {
        if (line.endsWith('\r'))
            line.chop(1);
    }
    while (lines.size() > 4 && lines.last().isEmpty())
        lines.removeLast();
    return lines.size() == 4 ? lines : QList<QByteArray>();
}

/// Decodes a line of base64. Returns no bytes if it is anything else.
QByteArray decoded(const QByteArray &line)
{
    const auto result = QByteArray::fromBase64Encoding(line, QByteArray::AbortOnBase64DecodingErrors);
    return result && (*result).toBase64() == line ? *result : QByteArray();
}

} // namespace

SignatureVerdict MinisignSignature::parse(const QByteArray &text, MinisignSignature *signature)
{
    if (text.size() > sizeLimit)
        return SignatureVerdict::NotASignature;
    const QList<QByteArray> lines = linesOf(text);
    if (lines.isEmpty() || !lines[0].startsWith(untrustedPrefix) || !lines[2].startsWith(trustedPrefix))
        return SignatureVerdict::NotASignature;
    const QByteArray first = decoded(lines[1]);
    const QByteArray second = decoded(lines[3]);
    if (first.size() != 2 + MinisignKey::idSize + signatureSize || second.size() != signatureSize)
        return SignatureVerdict::NotASignature;
    if (first.startsWith("Ed"))
        return SignatureVerdict::LegacyAlgorithm;
    if (!first.startsWith("ED"))
        return SignatureVerdict::NotASignature;
    signature->keyId = first.mid(2, MinisignKey::idSize);
    signature->imageSignature = first.mid(2 + MinisignKey::idSize);
    signature->trustedComment = lines[2].mid(static_cast<int>(qstrlen(trustedPrefix)));
    signature->commentSignature = second;
    return SignatureVerdict::Valid;
}

QStringList MinisignSignature::models() const
{
    QStringList names;
    QByteArray comment = trustedComment;
    comment.replace('\t', ' ');
    const QList<QByteArray> words = comment.split(' ');
    for (const QByteArray &word : words) {
        if (word.startsWith(modelPrefix))
            names.append(QString::fromUtf8(word.mid(static_cast<int>(qstrlen(modelPrefix)))));
    }
    return names;
}
