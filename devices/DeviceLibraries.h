#pragma once

#include <QString>

/// Keeps libusb and hidapi initialised during its lifetime. Main thread only.
class DeviceLibraries
{
public:
    DeviceLibraries() = default;
    ~DeviceLibraries();
    DeviceLibraries(const DeviceLibraries &) = delete;
    DeviceLibraries &operator=(const DeviceLibraries &) = delete;

    /// Initialises the library and returns whether it can be used. Call it at most once.
    bool initialiseUsb();
    bool initialiseHid();

    /// Return the versions of libusb and hidapi, as in "1.0.26".
    static QString usbVersion();
    static QString hidVersion();

    bool usbReady() const { return m_usbReady; }
    bool hidReady() const { return m_hidReady; }

private:
    bool m_usbReady = false;
    bool m_hidReady = false;
};
