#pragma once

/// libusb and hidapi, initialised for as long as this object lives. A library that cannot be
/// initialised is said in a modal warning box, after which the program goes on without it.
class DeviceLibraries
{
public:
    DeviceLibraries() = default;
    ~DeviceLibraries();
    DeviceLibraries(const DeviceLibraries &) = delete;
    DeviceLibraries &operator=(const DeviceLibraries &) = delete;

    /// Each is called once, on the GUI thread.
    void initialiseUsb();
    void initialiseHid();
    /// Asks the program to quit if a library failed. The request is forgotten when the event loop
    /// starts, and is meant to be: the window opens all the same. Until then it ends every local
    /// event loop at once, the next warning's and that of a tool which is waited for, so it comes
    /// after all of them.
    void askToQuitAfterFailure() const;

    bool usbReady() const { return m_usbReady; }

private:
    bool m_usbReady = false;
    bool m_hidReady = false;
};
