#include "update/FirmwareServerAddress.h"

QString firmwareManifestUrl()
{
    return firmwareServerAddress() + QLatin1String("/Tessilonix/firmware/firmware-version-check-test.json");
}
