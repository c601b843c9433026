#pragma once

#include <QLatin1String>
#include <QtGlobal>

/// A device model: its ids in normal operation, and how it is updated.
struct ModelRow
{
    /// The key that the controlled-device list, the manifest and the per-model rules use.
    QLatin1String name;
    quint32 vendorId;
    quint32 productId;
    /// 1 if the model is updated through the IAP programmer instead of the SoC flasher, else 0.
    quint8 iapFlag;
};
