#pragma once

#include <QString>

/// The address from which the program of this build fetches its firmware. Servers that are to be found by
/// the program itself, and not through a manifest, must listen there.
namespace FirmwareAddress {

/// Scheme, host and port, as the build was configured with them.
QString server();
/// The port in server(), or the scheme's own one where it names none.
quint16 port();

} // namespace FirmwareAddress
