#pragma once

#include "checks/Finding.h"
#include "signature/ImageVerifier.h"

#include <QString>
#include <QStringList>

/// Decides on the signature that a manifest gives for an image.
namespace SignatureFindings {

/// Decides whether the signature is one by `keys` for `model`, without looking at the image.
Finding signature(const QString &what, const QString &text, const QString &model, const QStringList &keys);

/// Decides what the verification of a signature has come to, with an image or without one.
Finding verification(const QString &what, const ImageVerifier::Result &result, const QString &model);

} // namespace SignatureFindings
