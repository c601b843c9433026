#pragma once

#include "checks/Finding.h"
#include "driver/DriverState.h"

#include <QString>

#include <optional>

/// Findings about what the machine has for an update of any model. The functions only judge the facts that
/// they are given; nothing here looks at the machine.
namespace SystemFindings {

/// Judges the driver. `state` is nothing on a system that needs none.
Finding driver(const std::optional<DriverState> &state);

/// Judges the temporary folder. `reason` says why it cannot be used; empty if it can.
Finding temporaryFolder(const QString &path, const QString &reason);

/// Judges the free bytes in the folder for downloads. `imageSize` is 0 if it is not known.
Finding diskSpace(qint64 available, qint64 imageSize);

/// Judges the lock that lets only one copy of the program update.
Finding updateLock(bool isTakenElsewhere);

/// Judges TLS. `serverAddress` is that of the manifest. `library` is the TLS library's version; empty if
/// there is none.
Finding tls(const QString &serverAddress, const QString &library);

} // namespace SystemFindings
