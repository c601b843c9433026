#pragma once

#include "checks/Finding.h"
#include "driver/DriverState.h"

#include <QString>

#include <optional>

/// Decides on what this machine has for an update of whatever model. Nothing here looks at the machine.
namespace SystemFindings {

/// `state` is nothing where no driver is needed.
Finding driver(const std::optional<DriverState> &state);

/// `reason` tells why the folder cannot be used; empty if it can.
Finding temporaryFolder(const QString &path, const QString &reason);

/// Decides on the free bytes where the image will lie. `imageSize` is 0 if it is not known.
Finding diskSpace(qint64 available, qint64 imageSize);

Finding updateLock(bool isTakenElsewhere);

/// `serverAddress` is the manifest's. `library` names the TLS library; empty if there is none.
Finding tls(const QString &serverAddress, const QString &library);

} // namespace SystemFindings
