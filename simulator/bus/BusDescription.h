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

/// One HID interface (or, on systems that give each its own path, one top-level collection).
struct HidNodeDescription
{
    /// bInterfaceNumber; -1 for one that the system does not tell.
    int number = 0;
    /// Ordinal of the top-level collection when several nodes share an interface number.
    int collection = 1;
    /// How many top-level collections its report descriptor holds.
    int collections = 1;
    /// The node's file name, with or without a marker. Empty: the next free "hidrawN".
    QString node;
    /// The update-mode report works here and nowhere else.
    bool acceptsReport = false;
    /// Opening it fails when false.
    bool openable = true;
    /// An enumeration sees it without a path.
    bool pathless = false;
    /// Its report descriptor; empty: one is made for `collections`.
    QByteArray reportDescriptor;
    /// Its paths where paths are those of Windows, one for each enumerated collection; empty: made.
    QStringList windowsPaths;
};

/// What the device does once it has been sent the update-mode report.
struct ReportAnswer
{
    enum class Action { Bootloader, Stay, Vanish };
    /// A: report id 4 and the command; B: the same bytes without the report id, shifted left by one.
    enum class Layout { A, B };

    Action action = Action::Bootloader;
    Layout layout = Layout::A;
    /// From the report until the device leaves the bus, and from there until it is back.
    int leaveAfterMs = 20;
    int afterMs = 150;
};

/// What a reset in the bootloader does.
struct ResetAnswer
{
    enum class Action { Return, Stay, Vanish };

    Action action = Action::Return;
    int leaveAfterMs = 20;
    int afterMs = 150;
};

/// How writes to the device's HID nodes end. Only Ok lets the device see the bytes.
struct WriteBehaviour
{
    enum class Answer { Ok, Short, Refused, Error };

    Answer answer = Answer::Ok;
    /// What a short write claims to have written.
    int count = 0;
};

struct DeviceDescription
{
    enum class Start { Absent, Application, Bootloader };

    QString key;
    /// The model's name; for people only.
    QString name;
    UsbIds application;
    UsbIds bootloader{0x33C3, 0x8899};
    /// Devices that stand on the bus together are listed in the order of their positions.
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
    /// A microcontroller: an IAP programmer reaches it while it runs its application.
    bool programmable = false;

    /// Changes the parts of the behaviour ("onReport", "onReset", "writes") that `changes` holds.
    /// Returns what is wrong with it, in which case nothing was changed; empty when all is well.
    QString applyBehaviour(const QJsonObject &changes);
};

/// Which devices exist and how each behaves; README.md describes the JSON text. Unknown keys and
/// clashing keys, positions or node names are errors: a typing mistake must not pass for a test.
struct BusDescription
{
    /// Whether the bus shows its own root hub, as every real one does.
    bool rootHub = true;
    /// In bus order.
    QVector<DeviceDescription> devices;

    static constexpr int maximumPosition = 125;
    /// How long a report descriptor may be, in bytes.
    static constexpr int maximumReportDescriptor = 4096;

    /// Nothing when the text is wrong; `error` (may be null) then says where.
    static std::optional<BusDescription> parse(const QByteArray &json, QString *error);
    /// Puts devices into bus order and names nodes without a name. Returns which two clash; empty if none do.
    QString complete();
    /// Whether the text is one for DeviceDescription::ports.
    static bool isPorts(const QString &text);
};
