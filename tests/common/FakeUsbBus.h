#pragma once

#include "devices/usb/UsbBus.h"

#include <libusb.h>

/// A fake USB bus that lists devices in the order in which they are plugged in.
class FakeUsbBus : public UsbBus
{
public:
    Listing list() override
    {
        ++m_listings;
        return m_listing;
    }

    void plug(quint32 vendorId, quint32 productId)
    {
        libusb_device_descriptor descriptor{};
        descriptor.idVendor = static_cast<quint16>(vendorId);
        descriptor.idProduct = static_cast<quint16>(productId);
        plug(descriptor);
    }
    void plug(const libusb_device_descriptor &descriptor)
    {
        m_listing.descriptors.append(descriptor);
        m_listing.count = m_listing.descriptors.size();
    }
    void unplugAll() { m_listing = Listing(); }
    /// Makes all later listings return this error and no devices.
    void failWith(qint64 error) { m_listing = Listing{error, {}, {}}; }

    /// Returns how often the bus was listed.
    int listings() const { return m_listings; }

private:
    Listing m_listing;
    int m_listings = 0;
};
