#pragma once

#include "session/UpdateResult.h"
#include "signature/ImageVerifier.h"
#include "support/Clock.h"
#include "support/log/Reporter.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

/// Checks by its signature whether an image may be written, and logs the reason if not. Without keys all
/// images may be written, and nothing is logged. Reads the whole image, so do not use it on the GUI thread.
class SignatureCheck
{
public:
    /// `keys` are the maker's keys, see firmwareKeys(). `reporter` and `clock` must outlive this object.
    SignatureCheck(Reporter &reporter, const Clock &clock, const QStringList &keys);

    /// Checks a downloaded image by the signature in the manifest's entry for `deviceKey`. The signature must
    /// be for that model. Returns None, SignatureRefused or ProgramClosed.
    UpdateReason checkServerImage(const QString &file, const QJsonObject &manifest,
                                  const QString &deviceKey) const;

    /// Checks a file of the user by the signature in the file beside it, whose name has ".minisig" appended.
    /// A file without a signature may be written unless one is required. If `model` is empty because the
    /// model of the device is not known, the signature may be for any model. Returns the same values as
    /// checkServerImage().
    UpdateReason checkLocalImage(const QString &file, const QString &model, bool isRequired) const;

    /// Returns the path of the file with the signature of `image`.
    static QString signatureFile(const QString &image);

private:
    UpdateReason check(const QString &file, const QByteArray &signature, const QString &model) const;
    UpdateReason refuse(const QString &reason) const;

    Reporter &m_reporter;
    const Clock &m_clock;
    const bool m_isOn;
    const ImageVerifier m_verifier;
};
