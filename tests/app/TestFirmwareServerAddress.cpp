#include "update/FirmwareKeys.h"
#include "update/FirmwareServerAddress.h"

// Nothing listens on this port, the discard port of this machine: a test that fetched something would fail.
QString firmwareServerAddress()
{
    return QStringLiteral("http://127.0.0.1:9");
}

QStringList firmwareKeys()
{
    return {};
}
