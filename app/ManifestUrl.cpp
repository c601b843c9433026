#include "app/FirmwareServer.h"

QString firmwareManifestUrl()
{
    return firmwareServer() + QLatin1String("/Tessilonix/firmware/firmware-version-check-test.json");
}
