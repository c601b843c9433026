#include "update/FirmwareKeys.h"

QStringList firmwareKeys()
{
    return QStringLiteral(QUILLMARSH_FIRMWARE_KEYS).split(QLatin1Char(','), Qt::SkipEmptyParts);
}
