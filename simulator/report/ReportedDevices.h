#pragma once

#include "simulator/bus/BusDescription.h"
#include "simulator/bus/JsonReader.h"

#include <QSet>

/// Makes simulated devices of those that a report lists. Add all USB devices in bus order, then all HID
/// interfaces in the order of their enumeration.
class ReportedDevices
{
public:
    /// `error` takes the first problem; not owned, must outlive this object.
    explicit ReportedDevices(QString *error) : m_error(error) {}

    void addUsb(JsonReader entry);
    void addHid(JsonReader entry);

    /// Returns the description. Call it once, last.
    BusDescription take();
    /// The model of the first known device; empty if there is none.
    QString firstModel() const { return m_firstModel; }

private:
    /// A device, and what is needed until its last interface has been added.
    struct Device
    {
        DeviceDescription description;
        /// Whether more than ids and class is known of it.
        bool isDetailed = false;
        bool isHub = false;
        /// The word by which the interface is found that takes the update-mode report; empty: the first one.
        QString marker;
        /// The places on the device that were seen so far.
        QSet<QString> places;
    };

    void readDetails(JsonReader &entry, Device &device);
    Device *deviceOf(const UsbIds &ids, const QString &position, const QString &place);
    void addNode(Device &device, HidNodeDescription node, const QString &place);
    QString freeKey(const QString &wanted);
    void giveHubsTheirPorts();
    void giveOthersFreePorts();

    QString *m_error;
    QVector<Device> m_devices;
    QSet<QString> m_keys;
    QSet<QString> m_ports;
    QString m_firstModel;
    int m_nodes = 0;
};
