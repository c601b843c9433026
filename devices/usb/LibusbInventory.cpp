#include "devices/BusInventory.h"
#include "devices/usb/LibusbDeviceList.h"
#include "devices/usb/LibusbPosition.h"
#include "devices/usb/UsbDescriptorBytes.h"

#include <libusb.h>

#include <memory>

namespace {

struct ConfigurationDeleter
{
    void operator()(libusb_config_descriptor *descriptor) const { libusb_free_config_descriptor(descriptor); }
};

QVector<QByteArray> configurationsOf(libusb_device *device, int count)
{
    QVector<QByteArray> configurations;
    for (int index = 0; index < count; ++index) {
        libusb_config_descriptor *descriptor = nullptr;
        if (libusb_get_config_descriptor(device, static_cast<quint8>(index), &descriptor) != LIBUSB_SUCCESS)
            continue;
        const std::unique_ptr<libusb_config_descriptor, ConfigurationDeleter> owner(descriptor);
        configurations.append(UsbDescriptorBytes::of(*descriptor));
    }
    return configurations;
}

} // namespace

void readUsbInventory(bool usbReady, const BusInventory::IsWanted &isWanted, BusInventory &inventory)
{
    if (!usbReady)
        return;
    const LibusbDeviceList devices;
    inventory.usbCount = devices.count();
    for (ssize_t i = 0; i < devices.count(); ++i) {
        libusb_device_descriptor descriptor{};
        if (libusb_get_device_descriptor(devices.at(i), &descriptor) != LIBUSB_SUCCESS)
            continue;
        UsbRecord record;
        record.vendorId = descriptor.idVendor;
        record.productId = descriptor.idProduct;
        record.deviceClass = descriptor.bDeviceClass;
        if (isWanted(descriptor.idVendor)) {
            record.descriptor = UsbDescriptorBytes::of(descriptor);
            record.configurations = configurationsOf(devices.at(i), descriptor.bNumConfigurations);
            record.position = libusbPosition(devices.at(i));
        }
        inventory.usb.append(record);
    }
}
