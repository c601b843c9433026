#pragma once

#include "signature/MinisignKey.h"
#include "signature/MinisignSignature.h"
#include "support/Clock.h"

#include <QString>
#include <QStringList>
#include <QVector>

/// Verifies images with the public keys of their maker. An image is read in blocks of a fixed size, so the
/// memory needed does not depend on it; 256 MiB take a fraction of a second. May be used from any thread.
class ImageVerifier
{
public:
    /// `keys` as MinisignKey::parse() takes them; what is no key counts as a key that has signed nothing.
    explicit ImageVerifier(const QStringList &keys);

    struct Result
    {
        SignatureVerdict verdict = SignatureVerdict::NotASignature;
        /// What the text says, if it is a signature. Trust it only if the verdict is Valid, OtherModel or one
        /// about the image.
        MinisignSignature signature;
    };

    /// Verifies the signature itself, without an image: its form, its key, and its trusted comment, which
    /// must name `model`. An empty `model` is not compared.
    Result verifySignature(const QByteArray &text, const QString &model) const;

    /// Verifies the signature and then the image. Gives up with Interrupted as soon as `clock` says that the
    /// program is leaving.
    Result verifyImage(const QString &file, const QByteArray &text, const QString &model,
                       const Clock &clock) const;

private:
    bool hasSigned(const MinisignSignature &signature, const QByteArray &ofWhat,
                   const QByteArray &message) const;

    QVector<MinisignKey> m_keys;
};

/// Returns why an image with this result is refused, as a sentence; empty if it is valid. An image for
/// another model than `model` is named with the models that it is for.
QString reasonToRefuse(const ImageVerifier::Result &result, const QString &model);
