#include "tests/checks/TestServerAddress.h"

#include "update/FirmwareKeys.h"
#include "update/FirmwareServerAddress.h"

QString &testServerAddress()
{
    static QString address;
    return address;
}

QStringList &testFirmwareKeys()
{
    static QStringList keys;
    return keys;
}

QStringList firmwareKeys()
{
    return testFirmwareKeys();
}

QString firmwareServerAddress()
{
    return testServerAddress();
}
