#pragma once

#include "driver/DriverLog.h"

#include <QString>

#include <functional>

/// Tells a user, once, that the system does not let this program open a device that it is to update,
/// and what to do about that. GUI thread.
class DeviceAccess
{
public:
    /// `refusedFile` looks for such a device and returns its file, or an empty text.
    using RefusedFile = std::function<QString()>;

    explicit DeviceAccess(RefusedFile refusedFile);

    /// A look at devices that have been there for a while.
    void checkSettled(DriverLog &log);
    /// A look at devices of which one may just have come. What is refused at one look but not at the
    /// next does not count: the system gives access a moment after a device has appeared.
    void check(DriverLog &log);

private:
    RefusedFile m_refusedFile;
    QString m_refusedBefore;
    bool m_told = false;
};
