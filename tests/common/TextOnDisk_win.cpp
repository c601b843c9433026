#include "tests/common/TextOnDisk.h"

QByteArray textOnDisk(const QByteArray &text)
{
    return QByteArray(text).replace('\n', "\r\n");
}
