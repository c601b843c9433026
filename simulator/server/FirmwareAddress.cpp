#include "simulator/server/FirmwareAddress.h"

#include <QUrl>

QString FirmwareAddress::server()
{
    return QStringLiteral(QUILLMARSH_FIRMWARE_SERVER);
}

quint16 FirmwareAddress::port()
{
    const QUrl address(server());
    const int usualPort = address.scheme() == QLatin1String("https") ? 443 : 80;
    return static_cast<quint16>(address.port(usualPort));
}
