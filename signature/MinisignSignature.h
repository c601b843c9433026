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

    /// The id of the key that has signed.
    QByteArray keyId;
    /// The signature of the image's BLAKE2b sum.
    QByteArray imageSignature;
    QByteArray trustedComment;
    /// The signature of `imageSignature` and `trustedComment`.
    QByteArray commentSignature;

    /// Parses the text of a ".minisig" file. Returns Valid and fills `*signature`, or returns why the text
    /// cannot be used: NotASignature or LegacyAlgorithm. Does not verify who has signed.
    static SignatureVerdict parse(const QByteArray &text, MinisignSignature *signature);

    /// Returns the models in the trusted comment, each of which is a word "model:NAME".
    QStringList models() const;
};
