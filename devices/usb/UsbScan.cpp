#include "devices/usb/UsbScan.h"

#include "devices/models/ModelLists.h"

#include <libusb.h>

namespace {

void copyRow(const ModelRow &row, const LaunchOptions &options, UsbScanResult &result)
{
    ChosenDevice &device = result.device;
    result.found = true;
    device.name = row.name;
    device.vendorId = row.vendorId;
    device.productId = row.productId;
    if (options.isZN58Mode)
        return;

    result.hidScanWanted = ModelLists::isHidPathModel(device.name);
    device.hidPathFlag = result.hidScanWanted ? 1 : 0;
    if (options.isTessilonixMode)
        return;

    device.iapFlag = row.iapFlag;
    if (ModelLists::handsIdsToIapPanel(device.name))
        result.iapIds = IapIds{row.vendorId, row.productId};
}

} // namespace

UsbScanResult scanListing(const UsbBus::Listing &listing, const ModelTable &table,
                          const LaunchOptions &options, const ChosenDevice &previous)
{
    UsbScanResult result;
    result.device = previous;
    if (listing.count < 1)
        return result;
    for (const libusb_device_descriptor &descriptor : listing.descriptors) {
        ++result.examined;
        if (const ModelRow *row = table.find(descriptor.idVendor, descriptor.idProduct, options)) {
            copyRow(*row, options, result);
            break;
        }
    }
    return result;
}
