#include "update/SignatureCheck.h"

#include "update/FirmwareManifest.h"

#include <QFile>
#include <QFileInfo>

namespace {

/// Reads a signature file, up to one byte more than the maximum size of a signature. Returns nothing if it
/// cannot be read.
QByteArray readSignature(const QString &name)
{
    QFile file(name);
    // Opening a named pipe would block.
    if (!QFileInfo(name).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    return file.read(MinisignSignature::sizeLimit + 1);
}

} // namespace

SignatureCheck::SignatureCheck(Reporter &reporter, const Clock &clock, const QStringList &keys)
    : m_reporter(reporter),
      m_clock(clock),
      m_isOn(!keys.isEmpty()),
      m_verifier(keys)
{
}

UpdateReason SignatureCheck::checkServerImage(const QString &file, const QJsonObject &manifest,
                                              const QString &deviceKey) const
{
    if (!m_isOn)
        return UpdateReason::None;
    const QString signature = FirmwareManifest::signature(manifest, deviceKey);
    if (signature.isEmpty())
        return refuse(QStringLiteral("The manifest has no signature for it."));
    return check(file, signature.toUtf8(), deviceKey);
}

UpdateReason SignatureCheck::checkLocalImage(const QString &file, const QString &model, bool isRequired) const
{
    if (!m_isOn)
        return isRequired ? refuse(QStringLiteral("This program was built without the maker's keys."))
                          : UpdateReason::None;
    const QFileInfo beside(signatureFile(file));
    if (!beside.exists() && !beside.isSymLink()) {
        if (isRequired)
            return refuse(QStringLiteral("No signature lies beside it."));
        m_reporter.log(QStringLiteral("No signature lies beside the file. It is written without a check."));
        return UpdateReason::None;
    }
    const QByteArray signature = readSignature(beside.filePath());
    if (signature.isEmpty())
        return refuse(QStringLiteral("The signature beside it cannot be read or is empty."));
    return check(file, signature, model);
}

UpdateReason SignatureCheck::check(const QString &file, const QByteArray &signature,
                                   const QString &model) const
{
    m_reporter.log(QStringLiteral("Checking the signature of the image."));
    const ImageVerifier::Result result = m_verifier.verifyImage(file, signature, model, m_clock);
    if (result.verdict == SignatureVerdict::Interrupted)
        return UpdateReason::ProgramClosed;
    if (result.verdict != SignatureVerdict::Valid)
        return refuse(reasonToRefuse(result, model));
    if (model.isEmpty())
        m_reporter.log(
            QStringLiteral("The device cannot say its model, so that of the signature was not compared."));
    m_reporter.log(QStringLiteral("The signature is valid. Key %1, comment: %2")
                       .arg(MinisignKey::nameOf(result.signature.keyId),
                            QString::fromUtf8(result.signature.trustedComment)));
    return UpdateReason::None;
}

UpdateReason SignatureCheck::refuse(const QString &reason) const
{
    m_reporter.log(QStringLiteral("The image is refused: ") + reason);
    return UpdateReason::SignatureRefused;
}

QString SignatureCheck::signatureFile(const QString &image)
{
    return image + QLatin1String(".minisig");
}
