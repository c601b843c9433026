#include "devices/BusInventory.h"

#include "devices/hid/HidDetails.h"

BusInventory BusInventory::read(bool usbReady, HidPort &port, const IsWanted &isWanted)
{
    BusInventory inventory;
    readUsbInventory(usbReady, isWanted, inventory);
    const QVector<HidInterface> interfaces = port.enumerate();
    for (const HidInterface &seen : interfaces) {
        if (!isWanted(seen.vendorId)) {
            ++inventory.otherHid;
            continue;
        }
        HidRecord record;
        record.seen = seen;
        record.reportDescriptor = HidDetails::reportDescriptor(seen.path);
        record.position = HidDetails::position(seen.path);
        record.opens = !seen.path.isNull() && port.openPath(seen.path) != nullptr;
        inventory.hid.append(record);
    }
    return inventory;
}
