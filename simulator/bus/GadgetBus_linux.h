#pragma once

#include "simulator/bus/BusPresenter.h"

#include <QHash>
#include <QSocketNotifier>

#include <memory>
#include <vector>

/// Shows the devices on the kernel's own bus: each is a HID gadget on a port of the dummy host controller, so
/// programs meet real enumeration, real hidraw nodes and real unplugging. Needs root, configfs and the
/// modules dummy_hcd and libcomposite, and only belongs into a virtual machine.
///
/// What the kernel decides cannot be described: names of nodes, failed opens and failed writes. A device
/// listens with its right number of interfaces, and takes reports of up to 513 bytes.
class GadgetBus : public BusPresenter
{
public:
    GadgetBus();
    ~GadgetBus() override;

    /// Returns what is missing; empty when devices can be added.
    QString startError() const;

    void setWriteHandler(WriteHandler handler) override { m_handler = std::move(handler); }
    QString add(int id, const Device &device) override;
    void remove(int id) override;

private:
    struct Node
    {
        int file = -1;
        std::unique_ptr<QSocketNotifier> notifier;
    };
    struct Gadget
    {
        QString controller;
        std::vector<Node> nodes;
    };

    QString freeController() const;
    QString describe(const QString &folder, const Device &device) const;
    QString open(int id, int index, const QString &function, Node &node);
    void takeReport(int id, int index, int file);

    WriteHandler m_handler;
    QHash<int, std::shared_ptr<Gadget>> m_gadgets;
};
