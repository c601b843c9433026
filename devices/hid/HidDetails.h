#pragma once

#include <QByteArray>
#include <QString>

/// What this system tells of a HID interface beside its enumeration. May be called from any thread.
namespace HidDetails {

/// Returns the report descriptor of the interface at `path`; null where the system does not tell.
QByteArray reportDescriptor(const QByteArray &path);

/// Returns where its device is connected, as in "1-2.3"; empty where the system does not tell.
QString position(const QByteArray &path);

} // namespace HidDetails
