#include "update/FirmwareServerAddress.h"

QString firmwareServerAddress()
{
    return QStringLiteral(QUILLMARSH_FIRMWARE_SERVER);
}
