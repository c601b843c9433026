#include "tests/common/TextOnDisk.h"

QByteArray textOnDisk(const QByteArray &text)
{
    return text;
}
