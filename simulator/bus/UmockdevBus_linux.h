#pragma once

#include "simulator/bus/BusPresenter.h"

#include <QHash>
#include <QStringList>

#include <memory>

/// A bus that is visible to the real libusb and hidapi (hidraw), made with a umockdev testbed. The process
/// must run under umockdev-wrapper, and so must the programs on the bus; it must outlive them. Accesses to
/// nodes are answered from the event loop of the thread that created the bus, which must keep running.
///
/// libusb lists the newest device first. Of the devices that exist when it starts, it lists the one with the
/// last name first, so names are chosen such that this is the device with the lowest position.
class UmockdevBus : public BusPresenter
{
public:
    explicit UmockdevBus(bool rootHub);
    ~UmockdevBus() override;
    UmockdevBus(const UmockdevBus &) = delete;
    UmockdevBus &operator=(const UmockdevBus &) = delete;

    /// Returns why there is no bus, or an empty string.
    QString startError() const;

    void setWriteHandler(WriteHandler handler) override;
    QString add(int id, const Device &device) override;
    /// Removes a device. Blocks for about 10 ms; the implementation says why.
    void remove(int id) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
