#include "iap/IapArguments.h"

#include "iap/IapPortType.h"

QString IapArguments::signedHex(quint32 id)
{
    // QString::number() writes the two's complement of a negative number in bases other than ten.
    const auto value = static_cast<qint64>(static_cast<qint32>(id));
    return value < 0 ? QLatin1Char('-') + QString::number(-value, 16) : QString::number(value, 16);
}

QStringList IapArguments::getData(quint32 vendorId, quint32 productId)
{
    return {QStringLiteral("GetData"), signedHex(vendorId), signedHex(productId)};
}

QStringList IapArguments::start(const IapRun &run, const Fields &fields)
{
    // The programmer expects the index twice, once for the COM port and once for the USB device.
    const QString port = QString::number(fields.portIndex);
    return {QStringLiteral("Start"),
            QString::number(IapPortType::number(run.portType)),
            fields.address,
            signedHex(run.vendorId),
            signedHex(run.productId),
            port,
            port,
            fields.baudRate,
            fields.appStartAddress,
            fields.crcVerify ? QStringLiteral("true") : QStringLiteral("false"),
            run.updateFile};
}
