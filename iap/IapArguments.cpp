#include "iap/IapArguments.h"

#include "iap/IapPortType.h"

QString IapArguments::signedHex(quint32 id)
{
    // The toolkit writes a negative number's two's complement in bases other than ten.
    const auto value = static_cast<qint64>(static_cast<qint32>(id));
    return value < 0 ? QLatin1Char('-') + QString::number(-value, 16) : QString::number(value, 16);
}

QStringList IapArguments::getData(quint32 vendorId, quint32 productId)
{
    return {QStringLiteral("GetData"), signedHex(vendorId), signedHex(productId)};
}

QStringList IapArguments::start(const IapRun &run, const Fields &fields)
{
    // The same index twice: the programmer takes it as its COM port's and as its USB device's.
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
