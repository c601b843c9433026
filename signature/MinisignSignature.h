#pragma once

#include "signature/SignatureVerdict.h"

#include <QByteArray>
#include <QStringList>

/// A detached signature as minisign writes it: four lines, the second and the fourth in base64.
struct MinisignSignature
{
    /// The longest text that parse() reads, in bytes. Minisign's own comments are shorter.
    static constexpr int sizeLimit = 16 * 1024;
    static constexpr int signatureSize = 64;

    /// Which key has signed.
    QByteArray keyId;
    /// The signature of the image's BLAKE2b sum.
    QByteArray ofImage;
    QByteArray trustedComment;
    /// The signature of `ofImage` and `trustedComment`.
    QByteArray ofComment;

    /// Parses the text of a ".minisig" file. Returns Valid and fills `*signature`, or returns why it cannot
    /// be used: NotASignature or LegacyAlgorithm. Decides nothing about who has signed.
    static SignatureVerdict parse(const QByteArray &text, MinisignSignature *signature);

    /// Returns the models that the trusted comment names, each by a word "model:NAME".
    QStringList models() const;
};
