#pragma once

#include "simulator/bus/BusDescription.h"

#include <functional>

/// Shows devices to the programs that run on the simulated bus. Used from one thread, whose event
/// loop it needs to answer what those programs do.
class BusPresenter
{
public:
    struct Device
    {
        UsbIds ids;
        int position = 0;
        /// As in DeviceDescription.
        QString ports;
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
        /// What errno is after a failed write.
        int errorNumber = 0;
    };

    /// A write of `report` to HID node `node` (an index) of the device that was added as `device`.
    using WriteHandler = std::function<WriteAnswer(int device, int node, const QByteArray &report)>;

    virtual ~BusPresenter() = default;

    virtual void setWriteHandler(WriteHandler handler) = 0;
    /// Puts a device on the bus. Returns what went wrong; empty when it can be seen now.
    virtual QString add(int id, const Device &device) = 0;
    /// Takes it off again; writes to what a program still holds open fail from now on.
    virtual void remove(int id) = 0;
};
