#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

struct libusb_device_descriptor;

/// Writes the descriptors of the devices that the USB scan examines.
namespace DescriptorDump {

/// Writes bytes to standard output. It must not block, because the program that reads our output may stop
/// reading.
using StandardOutput = std::function<void(const QByteArray &)>;

/// Writes the ids and fields, partly to standard output and partly to the debug stream.
void write(const libusb_device_descriptor &descriptor, const StandardOutput &standardOutput);

/// Returns the labelled fields in decimal, one on each line, and a separator.
QByteArray text(const libusb_device_descriptor &descriptor);

/// Appends text() to the file. If it cannot be opened, writes a line to the debug stream.
void append(const libusb_device_descriptor &descriptor, const QString &filePath);

} // namespace DescriptorDump
