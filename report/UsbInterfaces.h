#pragma once

#include <QByteArray>
#include <QJsonArray>

/// The interfaces that a configuration descriptor names.
namespace UsbInterfaces {

/// Returns the interfaces with their endpoints, in the form of a report. Stops where the bytes make no sense.
QJsonArray of(const QByteArray &configuration);

} // namespace UsbInterfaces
