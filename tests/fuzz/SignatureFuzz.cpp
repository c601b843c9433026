#include "tests/fuzz/Fuzz.h"

#include "signature/ImageVerifier.h"

// The first line is a public key, the rest is a signature.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input = Fuzz::bytes(data, size);
    const int end = input.indexOf('\n');
    const QByteArray keyText = input.left(end);
    const QByteArray text = input.mid(end + 1);

    const std::optional<MinisignKey> key = MinisignKey::parse(keyText);
    if (key) {
        Fuzz::require(("Ed" + key->id + key->key).toBase64() == keyText, "a key has one text");
        Fuzz::require(!MinisignKey::nameOf(key->id).isEmpty(), "every key has a name");
    }
    MinisignSignature signature;
    const SignatureVerdict form = MinisignSignature::parse(text, &signature);
    if (form == SignatureVerdict::Valid) {
        Fuzz::require(signature.keyId.size() == MinisignKey::idSize, "a signature names its key");
        Fuzz::require(signature.imageSignature.size() == MinisignSignature::signatureSize,
                      "a signature of the image");
        Fuzz::require(signature.commentSignature.size() == MinisignSignature::signatureSize,
                      "a signature of the comment");
        Fuzz::require(!signature.trustedComment.contains('\n'), "a comment is one line");
    }
    const ImageVerifier verifier({QString::fromLatin1(keyText.constData(), keyText.size())});
    const ImageVerifier::Result result = verifier.verifySignature(text, QString());
    if (result.verdict == SignatureVerdict::Valid)
        Fuzz::require(key && key->id == result.signature.keyId && form == SignatureVerdict::Valid,
                      "what is valid was signed with the key");
    const QString model = QStringLiteral("DevMaa");
    const ImageVerifier::Result forModel = verifier.verifySignature(text, model);
    if (forModel.verdict == SignatureVerdict::Valid)
        Fuzz::require(result.verdict == SignatureVerdict::Valid && result.signature.models().contains(model),
                      "what is valid for a model names it");
    Fuzz::require((forModel.verdict == SignatureVerdict::Valid) == reasonToRefuse(forModel, model).isEmpty(),
                  "every refusal has a reason");
    return 0;
}
