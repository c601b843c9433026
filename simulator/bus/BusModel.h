#pragma once

#include "simulator/bus/BusDescription.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>

/// The devices of a simulated bus as a state machine. It stores the state of each device and what the device
/// has received; it does not know how devices are presented to programs. Times are milliseconds of any clock.
///
/// Devices behave like real ones: a device enters its bootloader only after exactly the right report on the
/// right interface, can be burned only in its bootloader, and keeps what was burned. Devices are identified
/// by their index in the description (bus order).
class BusModel
{
public:
    enum class Presence { Absent, Application, Bootloader };

    struct Device
    {
        DeviceDescription description;
        Presence presence = Presence::Absent;
        /// How often the device has appeared on the bus. It has been enumerated again if this has changed.
        int appearance = 0;
        /// The image that was last burned or programmed.
        QByteArray received;
        QVector<QByteArray> reports;
        /// How often the device was burned or programmed.
        int burns = 0;
        int resets = 0;
    };

    struct WriteResult
    {
        enum class Failure { None, Refused, Broken, Gone };

        /// The number of bytes that the write reports, -1 after a failure.
        int count = -1;
        Failure failure = Failure::None;
    };

    explicit BusModel(const BusDescription &description);

    const QVector<Device> &devices() const { return m_devices; }
    /// Returns the index of a device, or -1.
    int indexOf(const QString &key) const;

    /// Puts the device on the bus at once. Returns false if it already is there or `as` is Absent.
    bool plug(int device, Presence as);
    /// Removes the device at once and cancels its scheduled changes. Returns false if it is not on the bus.
    bool unplug(int device);
    /// Writes a report to HID node `node` of the device.
    WriteResult write(int device, int node, const QByteArray &report, qint64 nowMs);
    /// Returns the device to burn or to reset: the given one, or with -1 the first bootloader in bus order.
    /// Returns nothing if the device is not in its bootloader.
    std::optional<int> bootloader(int device = -1) const;
    /// Burns bootloader(`device`) and returns it. Does nothing and returns nothing if there is none.
    std::optional<int> burn(int device, const QByteArray &image);
    std::optional<int> reset(int device, qint64 nowMs);
    /// Programs a microcontroller. Does nothing and returns false unless it runs its application.
    bool program(int device, const QByteArray &image);
    /// See DeviceDescription::applyBehaviour().
    QString applyBehaviour(int device, const QJsonObject &changes);

    /// Returns the time at which the next device will appear or disappear by itself.
    std::optional<qint64> nextChange() const;
    /// Performs all changes that are due at `nowMs`.
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
    /// Sorted by time; changes with the same time are in the order in which they were scheduled.
    QVector<Change> m_changes;
};
