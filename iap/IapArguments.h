#pragma once

#include "iap/IapRun.h"

#include <QString>
#include <QStringList>

/// The command lines of the IAP programmer.
namespace IapArguments {

/// The contents of the panel's fields at the start. Intentional: the command line contains these values,
/// although IapRun has some of them as well.
struct Fields
{
    QString address;
    /// -1 if there is no port to choose.
    int portIndex = -1;
    QString baudRate;
    QString appStartAddress;
    bool crcVerify = false;
};

/// Returns `id` as a signed 32-bit number in lower-case hexadecimal, without prefix or padding: "-1" for all
/// ones.
QString signedHex(quint32 id);

/// Returns the arguments that ask for ports and devices.
QStringList getData(quint32 vendorId, quint32 productId);

/// Returns the eleven arguments that program a device.
QStringList start(const IapRun &run, const Fields &fields);

} // namespace IapArguments
