#include "devices/usb/LibusbDeviceList.h"
#include "devices/usb/LibusbPosition.h"
#include "devices/usb/UsbBus.h"

#include <libusb.h>

namespace {

class LibusbBus : public UsbBus
{
public:
    explicit LibusbBus(bool initialised) : m_initialised(initialised) {}

    Listing list() override
    {
        Listing listing;
        if (!m_initialised)
            return listing;
        const LibusbDeviceList devices;
        listing.count = devices.count();
        if (listing.count < 1)
            return listing;
        listing.descriptors.reserve(static_cast<int>(listing.count));
        for (ssize_t i = 0; i < devices.count(); ++i) {
            libusb_device_descriptor descriptor{};
            if (libusb_get_device_descriptor(devices.at(i), &descriptor) != LIBUSB_SUCCESS)
                continue;
            listing.descriptors.append(descriptor);
            listing.positions.append(libusbPosition(devices.at(i)));
        }
        return listing;
    }

private:
    bool m_initialised;
};

} // namespace

QString libusbPosition(libusb_device *device)
{
    // USB allows no more than seven hubs and devices in a row.
    quint8 ports[7];
    const int count = libusb_get_port_numbers(device, ports, sizeof ports);
    QString position = QString::number(libusb_get_bus_number(device));
    for (int i = 0; i < count; ++i)
        position += QLatin1Char(i == 0 ? '-' : '.') + QString::number(ports[i]);
    return position;
}

std::unique_ptr<UsbBus> makeLibusbBus(bool initialised)
{
    return std::make_unique<LibusbBus>(initialised);
}
