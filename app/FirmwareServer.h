#pragma once

#include <QString>

/// Scheme, host and port of the firmware server, without a path. Each executable defines its own,
/// so that nothing at run time can redirect the product.
QString firmwareServer();

/// Address of the firmware manifest on that server.
QString firmwareManifestUrl();
