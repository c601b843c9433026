#pragma once

#include <QString>

struct libusb_device;

/// Returns where a device is connected: bus and ports from the root hub on, as in "1-2.3".
QString libusbPosition(libusb_device *device);
