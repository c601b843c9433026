#pragma once

#include <QStringList>
#include <QVector>

#include <memory>

struct libusb_device_descriptor;

/// The interface to the USB bus. list() does not open any device and returns quickly. The bus returned by
/// makeLibusbBus() may be used from several threads at once: the monitor, and the thread that makes a report.
class UsbBus
{
public:
    struct Listing
    {
        /// The result of libusb's list call: the number of devices, or a negative error code.
        qint64 count = 0;
        /// The descriptors that could be read, in bus order.
        QVector<libusb_device_descriptor> descriptors;
        /// The position of each of them: the bus and the ports from the root hub on, as in "1-2.3". Has an
        /// entry for each descriptor, or is empty if the positions are not known.
        QStringList positions;
    };

    virtual ~UsbBus() = default;
    virtual Listing list() = 0;
};

/// Returns a bus that uses libusb's default context. If that could not be initialised, pass false for
/// `initialised`: all listings are then empty, because libusb would crash.
std::unique_ptr<UsbBus> makeLibusbBus(bool initialised);
