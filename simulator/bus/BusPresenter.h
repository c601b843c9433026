#pragma once

#include "simulator/bus/BusDescription.h"

#include <functional>

/// Presents devices to the programs on the simulated bus. Used on one thread, whose event loop must run to
/// answer the programs.
class BusPresenter
{
public:
    struct Device
    {
        UsbIds ids;
        int position = 0;
        /// As in DeviceDescription.
        QString ports;
        /// The device class; 9 for a hub.
        int deviceClass = 0;
        QByteArray descriptors;
        QString manufacturer;
        QString product;
        QString serial;
        QVector<HidNodeDescription> nodes;
    };

    struct WriteAnswer
    {
        int count = -1;
        /// The value of errno after a failed write.
        int errorNumber = 0;
    };

    /// Handles a write of `report` to HID node `node` (an index) of the device that was added as `device`.
    using WriteHandler = std::function<WriteAnswer(int device, int node, const QByteArray &report)>;

    virtual ~BusPresenter() = default;

    virtual void setWriteHandler(WriteHandler handler) = 0;
    /// Puts a device on the bus, which programs can then see. Returns the error, or an empty string.
    virtual QString add(int id, const Device &device) = 0;
    /// Removes a device. Writes to nodes that a program still has open fail from then on.
    virtual void remove(int id) = 0;
};
