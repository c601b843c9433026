#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

struct UsbIds
{
    quint16 vendorId = 0;
    quint16 productId = 0;
};

/// A HID interface, or one top-level collection on systems where each collection has its own path.
struct HidNodeDescription
{
    /// bInterfaceNumber; -1 for one that the system does not tell.
    int number = 0;
    /// The ordinal of the top-level collection if several nodes have the same interface number.
    int collection = 1;
    /// The number of top-level collections in the report descriptor.
    int collections = 1;
    /// The file name of the node, with or without a marker. If it is empty, the next free "hidrawN" is used.
    QString node;
    /// Whether the node accepts the update-mode report. No other node does.
    bool acceptsReport = false;
    /// Whether the node can be opened.
    bool openable = true;
    /// Whether enumerations list the node without a path.
    bool pathless = false;
    /// Its report descriptor; empty: one is made for `collections`.
    QByteArray reportDescriptor;
    /// Its paths where paths are those of Windows, one for each enumerated collection; empty: made.
    QStringList windowsPaths;
};

/// The reaction of a device to the update-mode report.
struct ReportAnswer
{
    enum class Action { Bootloader, Stay, Vanish };
    /// A: report id 4 and the command; B: the same bytes without the report id, shifted left by one.
    enum class Layout { A, B };

    Action action = Action::Bootloader;
    Layout layout = Layout::A;
    /// The time from the report until the device leaves the bus, and from then until it is back.
    int leaveAfterMs = 20;
    int afterMs = 150;
};

/// The reaction of a device in its bootloader to a reset.
struct ResetAnswer
{
    enum class Action { Return, Stay, Vanish };

    Action action = Action::Return;
    int leaveAfterMs = 20;
    int afterMs = 150;
};

/// The result of writes to the device's HID nodes. The device receives the bytes only with Ok.
struct WriteBehaviour
{
    enum class Answer { Ok, Short, Refused, Error };

    Answer answer = Answer::Ok;
    /// The number of bytes that a short write reports.
    int count = 0;
};

struct DeviceDescription
{
    enum class Start { Absent, Application, Bootloader };

    QString key;
    /// The name of the model; not used by the bus.
    QString name;
    UsbIds application;
    UsbIds bootloader{0x33C3, 0x8899};
    /// Devices that are on the bus when a program starts are listed in the order of their positions.
    int position = 0;
    /// Where it is connected, as in "1-2.3"; empty: made from the position.
    QString ports;
    /// bDeviceClass of the application.
    int deviceClass = 0;
    /// Device descriptor and configurations, shown while the device has the ids in them; empty: made.
    QByteArray descriptors;
    Start start = Start::Application;
    QString manufacturer;
    QString product;
    QString serial;
    QVector<HidNodeDescription> nodes;
    ReportAnswer onReport;
    ResetAnswer onReset;
    WriteBehaviour writes;
    /// Whether the device is a microcontroller, which an IAP programmer can access while it runs its
    /// application.
    bool programmable = false;

    /// Changes the parts of the behaviour ("onReport", "onReset", "writes") that `changes` contains. If
    /// `changes` is invalid, changes nothing and returns the error, otherwise an empty string.
    QString applyBehaviour(const QJsonObject &changes);
};

/// The devices on a bus and their behaviour; README.md describes the JSON form. Unknown keys and duplicate
/// keys, positions or node names are errors, so that a typing error cannot make a test meaningless.
struct BusDescription
{
    /// Whether the root hub is listed, as on every real bus.
    bool rootHub = true;
    /// In bus order.
    QVector<DeviceDescription> devices;

    static constexpr int maximumPosition = 125;
    /// How long a report descriptor may be, in bytes.
    static constexpr int maximumReportDescriptor = 4096;

    /// Parses a description. Returns nothing if it is invalid; `error` (may be null) is then set to the
    /// reason.
    static std::optional<BusDescription> parse(const QByteArray &json, QString *error);
    /// Puts devices into bus order and names nodes without a name. Returns which two clash; empty if none do.
    QString complete();
    /// Whether the text is one for DeviceDescription::ports.
    static bool isPorts(const QString &text);
};
