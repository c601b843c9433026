#pragma once

#include "simulator/bus/BusPresenter.h"

#include <QHash>
#include <QStringList>

#include <memory>

/// A bus that real libusb and real hidapi (hidraw) see, made of a umockdev testbed. The process
/// must run under umockdev-wrapper, and so must the programs, as its children; it must outlive
/// them. Whatever a program does to a node is answered from the event loop of the thread that made
/// the bus, which must keep running.
///
/// libusb lists the newest device first and, of those that are there when it starts, the one with
/// the last name first; names are given so that the latter is the one with the lowest position.
class UmockdevBus : public BusPresenter
{
public:
    explicit UmockdevBus(bool rootHub);
    ~UmockdevBus() override;
    UmockdevBus(const UmockdevBus &) = delete;
    UmockdevBus &operator=(const UmockdevBus &) = delete;

    /// Why there is no bus; empty when all is well.
    QString startError() const;

    void setWriteHandler(WriteHandler handler) override;
    QString add(int id, const Device &device) override;
    /// Blocks for about 10 ms, see the source.
    void remove(int id) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
