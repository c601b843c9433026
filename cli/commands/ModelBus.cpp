#include "cli/commands/ModelBus.h"

#include "devices/Bootloader.h"

#include <libusb.h>

ModelBus::ModelBus(UsbBus &bus, const QString &model) : m_bus(bus), m_model(model) {}

UsbBus::Listing ModelBus::list()
{
    Listing all = m_bus.list();
    if (m_model.isEmpty())
        return all;
    Listing some;
    for (int i = 0; i < all.descriptors.size(); ++i) {
        const libusb_device_descriptor &seen = all.descriptors.at(i);
        const ModelRow *row = m_table.find(seen.idVendor, seen.idProduct, LaunchOptions());
        if (!Bootloader::hasIds(seen.idVendor, seen.idProduct) && (!row || row->name != m_model))
            continue;
        some.descriptors.append(seen);
        some.positions.append(all.positions.value(i));
    }
    some.count = some.descriptors.size();
    return some;
}
