#include "signature/ImageVerifier.h"

#include <QFile>
#include <QFileInfo>

#include <sodium.h>

#include <algorithm>

// Intentional: sodium_init() is not called. It prepares random numbers and guarded memory, which are not
// needed here, and makes the library hash with vector instructions. On some processors these take twice as
// long as the portable code, which is as fast as b2sum everywhere. Hashing and verifying share no state
// between threads.

namespace {

/// Small enough to stay in the processor's cache between reading and hashing.
constexpr qint64 blockBytes = Q_INT64_C(256) * 1024;

static_assert(MinisignKey::keySize == crypto_sign_PUBLICKEYBYTES);
static_assert(MinisignSignature::signatureSize == crypto_sign_BYTES);

const unsigned char *bytesOf(const QByteArray &bytes)
{
    return reinterpret_cast<const unsigned char *>(bytes.constData());
}

/// Computes the image's BLAKE2b sum of 64 bytes, which is what the maker signs.
SignatureVerdict sumOf(const QString &fileName, const Clock &clock, QByteArray *sum)
{
    QFile file(fileName);
    // Opening a named pipe would block.
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return SignatureVerdict::ImageUnreadable;
    crypto_generichash_state state;
    crypto_generichash_init(&state, nullptr, 0, crypto_generichash_BYTES_MAX);
    QByteArray block(static_cast<int>(blockBytes), Qt::Uninitialized);
    for (;;) {
        if (clock.isShuttingDown())
            return SignatureVerdict::Interrupted;
        const qint64 count = file.read(block.data(), blockBytes);
        if (count < 0)
            return SignatureVerdict::ImageUnreadable;
        if (count == 0)
            break;
        crypto_generichash_update(&state, bytesOf(block), static_cast<unsigned long long>(count));
    }
    sum->resize(crypto_generichash_BYTES_MAX);
    crypto_generichash_final(&state, reinterpret_cast<unsigned char *>(sum->data()),
                             crypto_generichash_BYTES_MAX);
    return SignatureVerdict::Valid;
}

} // namespace

ImageVerifier::ImageVerifier(const QStringList &keys)
{
    for (const QString &text : keys) {
        if (const std::optional<MinisignKey> key = MinisignKey::parse(text.toLatin1()))
            m_keys.append(*key);
    }
}

/// Returns whether `signatureBytes` sign `message` with a key that has the signature's id. Anybody can choose
/// the id of a key, so several keys may have the same.
bool ImageVerifier::hasSigned(const MinisignSignature &signature, const QByteArray &signatureBytes,
                              const QByteArray &message) const
{
    return std::any_of(m_keys.begin(), m_keys.end(), [&](const MinisignKey &key) {
        return key.id == signature.keyId &&
               crypto_sign_verify_detached(bytesOf(signatureBytes), bytesOf(message),
                                           static_cast<unsigned long long>(message.size()),
                                           bytesOf(key.key)) == 0;
    });
}

ImageVerifier::Result ImageVerifier::verifySignature(const QByteArray &text, const QString &model) const
{
    Result result;
    MinisignSignature &signature = result.signature;
    result.verdict = MinisignSignature::parse(text, &signature);
    if (result.verdict != SignatureVerdict::Valid)
        return result;
    const bool isKnown = std::any_of(m_keys.begin(), m_keys.end(), [&signature](const MinisignKey &key) {
        return key.id == signature.keyId;
    });
    if (!isKnown)
        result.verdict = SignatureVerdict::UnknownKey;
    else if (!hasSigned(signature, signature.commentSignature,
                        signature.imageSignature + signature.trustedComment))
        result.verdict = SignatureVerdict::Forged;
    else if (!model.isEmpty() && !signature.models().contains(model))
        result.verdict = SignatureVerdict::OtherModel;
    return result;
}

ImageVerifier::Result ImageVerifier::verifyImage(const QString &file, const QByteArray &text,
                                                 const QString &model, const Clock &clock) const
{
    Result result = verifySignature(text, model);
    if (result.verdict != SignatureVerdict::Valid)
        return result;
    QByteArray sum;
    result.verdict = sumOf(file, clock, &sum);
    if (result.verdict == SignatureVerdict::Valid &&
        !hasSigned(result.signature, result.signature.imageSignature, sum))
        result.verdict = SignatureVerdict::OtherImage;
    return result;
}

QString reasonToRefuse(const ImageVerifier::Result &result, const QString &model)
{
    switch (result.verdict) {
    case SignatureVerdict::Valid:
        return {};
    case SignatureVerdict::Missing:
        return QStringLiteral("It has no signature.");
    case SignatureVerdict::NotASignature:
        return QStringLiteral("Its signature is not in minisign's format.");
    case SignatureVerdict::LegacyAlgorithm:
        return QStringLiteral("Its signature is of the legacy kind, which is not accepted.");
    case SignatureVerdict::UnknownKey:
        return QStringLiteral("It was signed with the key %1, which this program does not know.")
            .arg(MinisignKey::nameOf(result.signature.keyId));
    case SignatureVerdict::Forged:
        return QStringLiteral("Its signature or its trusted comment was altered.");
    case SignatureVerdict::OtherModel: {
        const QString models = result.signature.models().join(QStringLiteral(", "));
        return QStringLiteral("It was signed for %1, not for %2.")
            .arg(models.isEmpty() ? QStringLiteral("no model") : models, model);
    }
    case SignatureVerdict::ImageUnreadable:
        return QStringLiteral("It cannot be read.");
    case SignatureVerdict::OtherImage:
        return QStringLiteral("It is not the image that was signed.");
    case SignatureVerdict::Interrupted:
        return QStringLiteral("The program was closed.");
    }
    return {};
}
