#include "tests/support/TextOnDisk.h"

QByteArray textOnDisk(const QByteArray &text)
{
    return text;
}
