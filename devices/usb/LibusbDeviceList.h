#pragma once

#include <libusb.h>

#include <memory>

/// The devices that are connected now. libusb must have been initialised.
class LibusbDeviceList
{
public:
    LibusbDeviceList()
    {
        // libusb keeps every device that came or left until somebody handles its events.
        timeval noWait{};
        libusb_handle_events_timeout_completed(nullptr, &noWait, nullptr);
        libusb_device **devices = nullptr;
        m_count = libusb_get_device_list(nullptr, &devices);
        m_devices.reset(devices);
    }

    /// Returns the number of devices; below 0 is an error of libusb.
    ssize_t count() const { return m_count; }
    libusb_device *at(ssize_t index) const { return m_devices[static_cast<std::size_t>(index)]; }

private:
    struct Deleter
    {
        void operator()(libusb_device **devices) const { libusb_free_device_list(devices, 1); }
    };

    ssize_t m_count = 0;
    std::unique_ptr<libusb_device *[], Deleter> m_devices;
};
