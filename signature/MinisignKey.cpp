#include "signature/MinisignKey.h"

#include <algorithm>

std::optional<MinisignKey> MinisignKey::parse(const QByteArray &text)
{
    const auto decoded = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    const QByteArray &bytes = *decoded;
    // The comparison refuses what the decoder accepts: trailing bits that do not belong to a byte.
    if (!decoded || bytes.toBase64() != text || bytes.size() != 2 + idSize + keySize ||
        !bytes.startsWith("Ed"))
        return std::nullopt;
    return MinisignKey{bytes.mid(2, idSize), bytes.mid(2 + idSize)};
}

QString MinisignKey::nameOf(const QByteArray &id)
{
    // The id is a number whose lowest byte comes first.
    QByteArray number = id;
    std::reverse(number.begin(), number.end());
    return QString::number(number.toHex().toULongLong(nullptr, 16), 16).toUpper();
}
