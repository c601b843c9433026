#include "checks/SignatureFindings.h"

#include "checks/Texts.h"

namespace {

QString problemOf(const ImageVerifier::Result &result, const QString &model)
{
    const MinisignSignature &signature = result.signature;
    switch (result.verdict) {
    case SignatureVerdict::Valid:
        return {};
    case SignatureVerdict::Missing:
        return Texts::pick("The key is missing.", "缺少该键。");
    case SignatureVerdict::NotASignature:
        return Texts::pick("It is not a signature in minisign's format.", "不是 minisign 格式的签名。");
    case SignatureVerdict::LegacyAlgorithm:
        return Texts::pick("It is of the legacy kind, which is not accepted.", "是旧式签名,不予接受。");
    case SignatureVerdict::UnknownKey:
        return Texts::pick("It was made with the key %1, which this program does not know.",
                           "由密钥 %1 签名,本程序不认识该密钥。")
            .arg(MinisignKey::nameOf(signature.keyId));
    case SignatureVerdict::Forged:
        return Texts::pick("It, or its trusted comment, was altered.", "签名或其可信注释被改动过。");
    case SignatureVerdict::OtherModel:
        return Texts::pick("It is for \"%1\", not for %2.", "签名针对 \"%1\",而不是 %2。")
            .arg(signature.models().join(QStringLiteral(", ")), model);
    case SignatureVerdict::ImageUnreadable:
        return Texts::pick("The image cannot be read.", "无法读取镜像。");
    case SignatureVerdict::OtherImage:
        return Texts::pick("The image is not the one that was signed.", "镜像不是被签名的那一个。");
    case SignatureVerdict::Interrupted:
        return Texts::pick("It was not verified: the program was told to end.", "未验证:程序被要求退出。");
    }
    return {};
}

} // namespace

Finding SignatureFindings::signature(const QString &what, const QString &text, const QString &model,
                                     const QStringList &keys)
{
    ImageVerifier::Result result;
    if (text.isEmpty())
        result.verdict = SignatureVerdict::Missing;
    else
        result = ImageVerifier(keys).verifySignature(text.toUtf8(), model);
    return verification(what, result, model);
}

Finding SignatureFindings::verification(const QString &what, const ImageVerifier::Result &result,
                                        const QString &model)
{
    if (result.verdict == SignatureVerdict::Valid)
        return Findings::ok(what, Texts::pick("Key %1, comment: %2", "密钥 %1,注释:%2")
                                      .arg(MinisignKey::nameOf(result.signature.keyId),
                                           QString::fromUtf8(result.signature.trustedComment)));
    return Findings::problem(
        what, problemOf(result, model),
        Texts::pick("The maker has to sign the image for this model.", "需由厂商针对该型号对镜像签名。"));
}
