#pragma once

#include <QLatin1String>
#include <QtGlobal>

/// One device model: which ids it shows in its normal mode, and how it is updated.
struct ModelRow
{
    /// The key that the controlled-device list, the manifest and the per-model rules use.
    QLatin1String name;
    quint32 vendorId;
    quint32 productId;
    /// 1: updated through the IAP programmer instead of the SoC flasher; else 0.
    quint8 iapFlag;
};
