#pragma once

#include "session/UpdateResult.h"
#include "signature/ImageVerifier.h"
#include "support/Clock.h"
#include "support/Reporter.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

/// Decides by its signature whether an image may be written, and logs why not. Without keys everything may,
/// and nothing is logged. Reads the whole image: not for the GUI thread.
class SignatureCheck
{
public:
    /// `keys` are the maker's, see firmwareKeys(). `reporter` and `clock` must outlive this object.
    SignatureCheck(Reporter &reporter, const Clock &clock, const QStringList &keys);

    /// Checks a downloaded image by the signature in the manifest's entry for `deviceKey`, which is also the
    /// model that it must be for. Returns None, SignatureRefused or ProgramClosed.
    UpdateReason checkServerImage(const QString &file, const QJsonObject &manifest,
                                  const QString &deviceKey) const;

    /// Checks a file of the user's by the signature beside it, which is called like it with ".minisig" after
    /// the name. A file without one may be written unless a signature is required. `model` is empty for a
    /// device of which nobody has said what it is: then any model may be signed. Returns as above.
    UpdateReason checkLocalImage(const QString &file, const QString &model, bool isRequired) const;

    /// Returns the name of the file that holds the signature of `image`.
    static QString signatureFile(const QString &image);

private:
    UpdateReason check(const QString &file, const QByteArray &signature, const QString &model) const;
    UpdateReason refuse(const QString &reason) const;

    Reporter &m_reporter;
    const Clock &m_clock;
    const bool m_isOn;
    const ImageVerifier m_verifier;
};
