#pragma once

#include <QString>

/// The address from which the program of this build downloads the manifest. A server for the program must
/// listen there.
namespace FirmwareAddress {

/// Returns the scheme, host and port with which the build was configured.
QString server();
/// Returns the port in server(), or the default port of the scheme.
quint16 port();

} // namespace FirmwareAddress
