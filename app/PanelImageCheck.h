#pragma once

#include "session/UpdateResult.h"
#include "update/FirmwareImage.h"

#include <QString>
#include <QStringList>

class Reporter;

/// Verifies the signature of an image that the user writes with the IAP panel's own button, outside an
/// update. Returns at once if there are no `keys` or if the image was downloaded: the update has verified
/// that one. Otherwise another thread reads the image, and the GUI thread runs a local event loop meanwhile.
/// `model` is that of the connected device, or empty. Returns None, SignatureRefused, or ProgramClosed if the
/// program is shutting down.
UpdateReason checkPanelImage(Reporter &reporter, const QStringList &keys, const FirmwareImage &image,
                             const QString &model);
