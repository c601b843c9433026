#pragma once

#include "simulator/bus/BusDescription.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>

/// The devices of a simulated bus as a pure state machine: it knows what each device is and has
/// been sent, nothing of how that is shown to a program. Times are milliseconds of any one clock.
///
/// A device is honest: it enters its bootloader only after exactly the right report on the right
/// interface, can be burned only while it sits in its bootloader, and keeps what was burned.
/// Devices are named by their index in the description (bus order).
class BusModel
{
public:
    enum class Presence { Absent, Application, Bootloader };

    struct Device
    {
        DeviceDescription description;
        Presence presence = Presence::Absent;
        /// Counts how often it has appeared on the bus: a change means that it was re-enumerated.
        int appearance = 0;
        /// The image that was burned or programmed last.
        QByteArray received;
        QVector<QByteArray> reports;
        /// How often it was burned or programmed.
        int burns = 0;
        int resets = 0;
    };

    struct WriteResult
    {
        enum class Failure { None, Refused, Broken, Gone };

        /// Bytes that the write is said to have written, -1 after a failure.
        int count = -1;
        Failure failure = Failure::None;
    };

    explicit BusModel(const BusDescription &description);

    const QVector<Device> &devices() const { return m_devices; }
    /// -1 when there is none.
    int indexOf(const QString &key) const;

    /// Puts the device on the bus at once; false when it already is there or `as` is Absent.
    bool plug(int device, Presence as);
    /// Takes it off at once, and forgets what it was about to become. False when it was not there.
    bool unplug(int device);
    /// What a write to HID node `node` of the device ends in.
    WriteResult write(int device, int node, const QByteArray &report, qint64 nowMs);
    /// The device to burn or to reset: the given one, or for -1 the first bootloader in bus order.
    /// Nothing when that is not in its bootloader.
    std::optional<int> bootloader(int device = -1) const;
    /// Burns the bootloader() of `device`; nothing, and no effect, when there is none.
    std::optional<int> burn(int device, const QByteArray &image);
    std::optional<int> reset(int device, qint64 nowMs);
    /// Programs a microcontroller; false, and no effect, unless it runs its application.
    bool program(int device, const QByteArray &image);
    /// See DeviceDescription::applyBehaviour().
    QString applyBehaviour(int device, const QJsonObject &changes);

    /// When the next device will come or go by itself.
    std::optional<qint64> nextChange() const;
    /// Lets everything happen that was due by `nowMs`.
    void advance(qint64 nowMs);

private:
    struct Change
    {
        qint64 at = 0;
        int device = 0;
        Presence to = Presence::Absent;
    };

    void appear(int device, Presence as);
    void schedule(int device, qint64 atMs, Presence to);
    void forgetChanges(int device);

    QVector<Device> m_devices;
    /// By time; those of one time in the order in which they were scheduled.
    QVector<Change> m_changes;
};
