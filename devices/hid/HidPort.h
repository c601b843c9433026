#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <memory>

/// An open HID interface; the destructor closes it.
class HidDevice
{
public:
    virtual ~HidDevice() = default;

    /// Writes one output report, whose first byte is the report id. Returns the number of bytes written, or
    /// -1; errorText() then returns the reason.
    virtual int write(const QByteArray &report) = 0;
    virtual QString errorText() const = 0;
};

/// A HID interface found by an enumeration.
struct HidInterface
{
    quint16 vendorId = 0;
    quint16 productId = 0;
    /// Null if the interface has no path: the device is just being connected or removed, and the interface
    /// cannot be opened.
    QByteArray path;
    /// bInterfaceNumber; -1 if it is not known.
    int interfaceNumber = -1;
    /// What its top-level collection is for; 0 when the platform does not tell.
    quint16 usagePage = 0;
    quint16 usage = 0;
    /// The position of the interface on its device, in the form that paths have on Windows ("MI_00",
    /// "Col04"); empty on Windows. See HidMarkers.h.
    QString markers;
};

/// The interface to HID devices. The port returned by makeHidapiPort() and its devices may be used from
/// several threads at once; calls to hidapi are serialised.
class HidPort
{
public:
    virtual ~HidPort() = default;

    /// Returns all HID interfaces of the machine, in the platform's order.
    virtual QVector<HidInterface> enumerate() = 0;
    /// Opens the first interface with these ids. Returns null if none can be opened.
    virtual std::unique_ptr<HidDevice> open(quint16 vendorId, quint16 productId) = 0;
    virtual std::unique_ptr<HidDevice> openPath(const QByteArray &path) = 0;
    /// Returns the error of the last failed attempt to open an interface, or an empty string.
    virtual QString openErrorText() const = 0;
};

/// Returns a port that uses hidapi. hidapi should have been initialised; if that failed, it tries again by
/// itself.
std::unique_ptr<HidPort> makeHidapiPort();
