#pragma once

#include "checks/Finding.h"
#include "signature/ImageVerifier.h"

#include <QString>
#include <QStringList>

/// Findings about the signature that a manifest has for an image.
namespace SignatureFindings {

/// Judges whether the signature was made with one of `keys` for `model`, without looking at the image.
Finding signature(const QString &what, const QString &text, const QString &model, const QStringList &keys);

/// Turns the result of verifying a signature, with or without an image, into a finding.
Finding verification(const QString &what, const ImageVerifier::Result &result, const QString &model);

} // namespace SignatureFindings
