#pragma once

#include <QByteArray>

struct libusb_config_descriptor;
struct libusb_device_descriptor;

/// The bytes of descriptors that libusb has taken apart, as they are on the wire.
namespace UsbDescriptorBytes {

/// Returns the 18 bytes of a device descriptor.
QByteArray of(const libusb_device_descriptor &descriptor);

/// Returns a configuration with its interfaces, endpoints and what libusb does not know of.
QByteArray of(const libusb_config_descriptor &descriptor);

} // namespace UsbDescriptorBytes
