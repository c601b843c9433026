#pragma once

#include "iap/IapRun.h"

#include <QString>
#include <QStringList>

/// The command lines of the IAP programmer.
namespace IapArguments {

/// What the panel's fields hold at the moment of the start. The run record has some of it, too, but
/// the command line takes these.
struct Fields
{
    QString address;
    /// -1 when there is no port to choose.
    int portIndex = -1;
    QString baudRate;
    QString appStartAddress;
    bool crcVerify = false;
};

/// Signed 32-bit hexadecimal, lower case, without prefix or padding: "-1" for an id that is all ones.
QString signedHex(quint32 id);

/// Asks which ports and devices there are.
QStringList getData(quint32 vendorId, quint32 productId);

/// Programs a device; eleven arguments.
QStringList start(const IapRun &run, const Fields &fields);

} // namespace IapArguments
