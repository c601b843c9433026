#pragma once

#include <QStringList>
#include <QVector>

#include <memory>

struct libusb_device_descriptor;

/// The seam to the USB bus. list() opens no device and returns quickly; call it from the GUI thread.
class UsbBus
{
public:
    struct Listing
    {
        /// What the list call returned: the number of devices, or a negative error.
        qint64 count = 0;
        /// The descriptors that could be read, in bus order.
        QVector<libusb_device_descriptor> descriptors;
        /// Where each of them is connected: bus and ports from the root hub on, as in "1-2.3". As many
        /// entries as there are descriptors, or none if the positions are not known.
        QStringList positions;
    };

    virtual ~UsbBus() = default;
    virtual Listing list() = 0;
};

/// libusb's default context, which must have been initialised. When that failed, pass
/// `initialised` false: every listing is then empty, since libusb would crash.
std::unique_ptr<UsbBus> makeLibusbBus(bool initialised);
