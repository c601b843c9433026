#pragma once

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

    bool usbReady() const { return m_usbReady; }
    bool hidReady() const { return m_hidReady; }

private:
    bool m_usbReady = false;
    bool m_hidReady = false;
};
