#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

struct libusb_device_descriptor;

/// What the USB scan tells of each device that it looks at.
namespace DescriptorDump {

/// Takes bytes for the standard output. It must not block: a program that reads our output may
/// stop reading.
using StandardOutput = std::function<void(const QByteArray &)>;

/// Writes ids and fields, partly to the standard output and partly to the debug stream.
void write(const libusb_device_descriptor &descriptor, const StandardOutput &standardOutput);

/// The labelled fields in decimal, one a line, and a separator.
QByteArray text(const libusb_device_descriptor &descriptor);

/// Appends text() to the file; one that cannot be opened costs a line on the debug stream.
void append(const libusb_device_descriptor &descriptor, const QString &filePath);

} // namespace DescriptorDump
