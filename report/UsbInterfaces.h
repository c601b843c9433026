#pragma once

#include <QByteArray>
#include <QJsonArray>

/// The interfaces in a configuration descriptor.
namespace UsbInterfaces {

/// Returns the interfaces with their endpoints as a report describes them. Stops at the first invalid byte.
QJsonArray of(const QByteArray &configuration);

} // namespace UsbInterfaces
