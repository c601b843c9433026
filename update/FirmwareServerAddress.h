#pragma once

#include <QString>

/// Returns scheme, host and port of the firmware server, without a path. Each executable defines this
/// function itself, so that nothing can redirect the product at run time.
QString firmwareServerAddress();

/// Returns the address of the firmware manifest on that server.
QString firmwareManifestUrl();
