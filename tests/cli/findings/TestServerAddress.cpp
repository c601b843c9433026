#include "tests/cli/findings/TestServerAddress.h"

#include "update/FirmwareServerAddress.h"

QString &testServerAddress()
{
    static QString address;
    return address;
}

QString firmwareServerAddress()
{
    return testServerAddress();
}
