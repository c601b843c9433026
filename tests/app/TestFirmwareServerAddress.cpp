#include "update/FirmwareKeys.h"
#include "update/FirmwareServerAddress.h"

// Nobody listens on the discard port of this machine: a test that fetched would notice.
QString firmwareServerAddress()
{
    return QStringLiteral("http://127.0.0.1:9");
}

QStringList firmwareKeys()
{
    return {};
}
