#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <memory>

/// One opened HID interface; closes itself.
class HidDevice
{
public:
    virtual ~HidDevice() = default;

    /// Writes one output report, its first byte being the report id. Returns the bytes written, or
    /// -1, after which errorText() tells why.
    virtual int write(const QByteArray &report) = 0;
    virtual QString errorText() const = 0;
};

/// One HID interface as an enumeration shows it.
struct HidInterface
{
    quint16 vendorId = 0;
    quint16 productId = 0;
    /// Null when the interface has no path: it is just appearing or going, and cannot be opened.
    QByteArray path;
    /// bInterfaceNumber; -1 when the platform does not tell.
    int interfaceNumber = -1;
    /// What its top-level collection is for; 0 when the platform does not tell.
    quint16 usagePage = 0;
    quint16 usage = 0;
    /// Where the interface stands on its device, in the words that the path holds on Windows
    /// ("MI_00", "Col04"); empty where paths have these themselves. See HidMarkers.h.
    QString markers;
};

/// The seam to the HID interfaces. makeHidapiPort()'s port and its devices may be used from any thread, also
/// from several at once: hidapi lets one in at a time, the others wait.
class HidPort
{
public:
    virtual ~HidPort() = default;

    /// Every HID interface on the machine, in the platform's order.
    virtual QVector<HidInterface> enumerate() = 0;
    /// The first interface with these ids; null when none can be opened.
    virtual std::unique_ptr<HidDevice> open(quint16 vendorId, quint16 productId) = 0;
    virtual std::unique_ptr<HidDevice> openPath(const QByteArray &path) = 0;
    /// Returns why the last open that failed did. Empty if none has failed.
    virtual QString openErrorText() const = 0;
};

/// Returns a port on hidapi, which must have been initialised (it tries once more by itself when that
/// failed).
std::unique_ptr<HidPort> makeHidapiPort();
