#include "devices/usb/UsbDescriptorBytes.h"

#include <libusb.h>

#include <initializer_list>

namespace {

void append(QByteArray &bytes, std::initializer_list<int> values)
{
    for (const int value : values)
        bytes.append(static_cast<char>(value));
}

void appendExtra(QByteArray &bytes, const unsigned char *extra, int length)
{
    if (extra && length > 0)
        bytes.append(reinterpret_cast<const char *>(extra), length);
}

int low(int word)
{
    return word & 0xFF;
}

int high(int word)
{
    return (word >> 8) & 0xFF;
}

void appendEndpoint(QByteArray &bytes, const libusb_endpoint_descriptor &endpoint)
{
    append(bytes,
           {endpoint.bLength, endpoint.bDescriptorType, endpoint.bEndpointAddress, endpoint.bmAttributes,
            low(endpoint.wMaxPacketSize), high(endpoint.wMaxPacketSize), endpoint.bInterval});
    // Endpoints of audio devices are two bytes longer.
    if (endpoint.bLength >= LIBUSB_DT_ENDPOINT_AUDIO_SIZE)
        append(bytes, {endpoint.bRefresh, endpoint.bSynchAddress});
    appendExtra(bytes, endpoint.extra, endpoint.extra_length);
}

void appendInterface(QByteArray &bytes, const libusb_interface_descriptor &alternate)
{
    append(bytes, {alternate.bLength, alternate.bDescriptorType, alternate.bInterfaceNumber,
                   alternate.bAlternateSetting, alternate.bNumEndpoints, alternate.bInterfaceClass,
                   alternate.bInterfaceSubClass, alternate.bInterfaceProtocol, alternate.iInterface});
    appendExtra(bytes, alternate.extra, alternate.extra_length);
    for (int i = 0; alternate.endpoint && i < alternate.bNumEndpoints; ++i)
        appendEndpoint(bytes, alternate.endpoint[i]);
}

} // namespace

QByteArray UsbDescriptorBytes::of(const libusb_device_descriptor &descriptor)
{
    QByteArray bytes;
    append(bytes, {descriptor.bLength, descriptor.bDescriptorType, low(descriptor.bcdUSB),
                   high(descriptor.bcdUSB), descriptor.bDeviceClass, descriptor.bDeviceSubClass,
                   descriptor.bDeviceProtocol, descriptor.bMaxPacketSize0, low(descriptor.idVendor),
                   high(descriptor.idVendor), low(descriptor.idProduct), high(descriptor.idProduct),
                   low(descriptor.bcdDevice), high(descriptor.bcdDevice), descriptor.iManufacturer,
                   descriptor.iProduct, descriptor.iSerialNumber, descriptor.bNumConfigurations});
    return bytes;
}

QByteArray UsbDescriptorBytes::of(const libusb_config_descriptor &descriptor)
{
    QByteArray bytes;
    append(bytes, {descriptor.bLength, descriptor.bDescriptorType, low(descriptor.wTotalLength),
                   high(descriptor.wTotalLength), descriptor.bNumInterfaces, descriptor.bConfigurationValue,
                   descriptor.iConfiguration, descriptor.bmAttributes, descriptor.MaxPower});
    appendExtra(bytes, descriptor.extra, descriptor.extra_length);
    for (int i = 0; descriptor.interface && i < descriptor.bNumInterfaces; ++i) {
        const libusb_interface &each = descriptor.interface[i];
        for (int alternate = 0; alternate < each.num_altsetting; ++alternate)
            appendInterface(bytes, each.altsetting[alternate]);
    }
    return bytes;
}
