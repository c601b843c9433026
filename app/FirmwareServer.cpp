#include "app/FirmwareServer.h"

QString firmwareServer()
{
    return QStringLiteral(QUILLMARSH_FIRMWARE_SERVER);
}
