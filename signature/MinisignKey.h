#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// A public key as minisign writes it: its id, and the key itself.
struct MinisignKey
{
    static constexpr int idSize = 8;
    static constexpr int keySize = 32;

    QByteArray id;
    QByteArray key;

    /// Parses the second line of a public key file: 56 characters of base64, beginning with "RW". Returns
    /// nothing if `text` is anything else.
    static std::optional<MinisignKey> parse(const QByteArray &text);

    /// Returns the id of a key as minisign shows it: hexadecimal digits, without leading zeros.
    static QString nameOf(const QByteArray &id);
};
