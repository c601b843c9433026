#pragma once

#include "session/UpdateResult.h"
#include "update/FirmwareImage.h"

#include <QString>
#include <QStringList>

class Reporter;

/// Checks, by its signature, an image that the user has the IAP panel program without an update around it. A
/// downloaded one was checked already. Reads the image on another thread and meanwhile runs a local event
/// loop on the GUI thread; returns at once without `keys`. Returns None, SignatureRefused, or ProgramClosed
/// when the program began to leave. `model` is that of the connected device, or empty.
UpdateReason checkPanelImage(Reporter &reporter, const QStringList &keys, const FirmwareImage &image,
                             const QString &model);
