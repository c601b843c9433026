#pragma once

#include "signature/MinisignKey.h"
#include "signature/MinisignSignature.h"
#include "support/Clock.h"

#include <QString>
#include <QStringList>
#include <QVector>

/// Verifies images with the public keys of their maker. An image is read in blocks of a fixed size, so that
/// large images need no more memory; 256 MiB take a fraction of a second. May be used from any thread.
class ImageVerifier
{
public:
    /// Takes the texts that MinisignKey::parse() reads. Texts that are not keys are ignored.
    explicit ImageVerifier(const QStringList &keys);

    struct Result
    {
        SignatureVerdict verdict = SignatureVerdict::NotASignature;
        /// The parsed text, if it is a signature. Trust it only if the verdict is Valid, OtherModel,
        /// ImageUnreadable, OtherImage or Interrupted.
        MinisignSignature signature;
    };

    /// Verifies the signature itself, without an image: its form, its key, and its trusted comment, which
    /// must name `model`. An empty `model` is not compared.
    Result verifySignature(const QByteArray &text, const QString &model) const;

    /// Verifies the signature and then the image. Returns Interrupted as soon as `clock` says that the
    /// program is shutting down.
    Result verifyImage(const QString &file, const QByteArray &text, const QString &model,
                       const Clock &clock) const;

private:
    bool hasSigned(const MinisignSignature &signature, const QByteArray &signatureBytes,
                   const QByteArray &message) const;

    QVector<MinisignKey> m_keys;
};

/// Returns a sentence that says why an image with this result is refused; empty if it is valid. If the image
/// was signed for other models than `model`, the sentence names them.
QString reasonToRefuse(const ImageVerifier::Result &result, const QString &model);
