#include "devices/BusInventory.h"

#include "devices/usb/UsbDescriptorBytes.h"
#include "tests/common/FakeHidPort.h"

#include <gtest/gtest.h>

#include <libusb.h>

namespace {

constexpr quint32 wanted = 0xF104;

BusInventory inventoryOf(HidPort &port)
{
    return BusInventory::read(false, port, [](quint32 vendorId) { return vendorId == wanted; });
}

TEST(BusInventoryTest, WithoutLibusbThereAreNoUsbDevices)
{
    FakeHidPort port;
    const BusInventory inventory = inventoryOf(port);
    EXPECT_EQ(inventory.usbCount, 0);
    EXPECT_TRUE(inventory.usb.isEmpty());
}

TEST(BusInventoryTest, OnlyInterfacesOfWantedDevicesAreOpenedAndTheyAreClosedAgain)
{
    FakeHidPort port;
    port.add(0x046D, 1, "/dev/other");
    port.add(wanted, 1, "/dev/first", QStringLiteral("MI_00&Col01"));
    port.add(wanted, 1, "/dev/refused");
    port.add(wanted, 1, QByteArray());
    port.refuse("/dev/refused");
    const BusInventory inventory = inventoryOf(port);
    ASSERT_EQ(inventory.hid.size(), 3);
    EXPECT_EQ(inventory.otherHid, 1);
    EXPECT_TRUE(inventory.hid.at(0).opens);
    EXPECT_EQ(inventory.hid.at(0).seen.markers, QStringLiteral("MI_00&Col01"));
    EXPECT_FALSE(inventory.hid.at(1).opens);
    EXPECT_FALSE(inventory.hid.at(2).opens);
    EXPECT_EQ(port.askedPaths(), (QByteArrayList{"/dev/first", "/dev/refused"}));
    EXPECT_TRUE(port.openPaths().isEmpty());
}

TEST(UsbDescriptorBytesTest, ADeviceDescriptorIsAsOnTheWire)
{
    libusb_device_descriptor descriptor{};
    descriptor.bLength = 18;
    descriptor.bDescriptorType = 1;
    descriptor.bcdUSB = 0x0210;
    descriptor.bDeviceClass = 0xEF;
    descriptor.bDeviceSubClass = 2;
    descriptor.bDeviceProtocol = 3;
    descriptor.bMaxPacketSize0 = 64;
    descriptor.idVendor = 0xF104;
    descriptor.idProduct = 0xA009;
    descriptor.bcdDevice = 0x1234;
    descriptor.iManufacturer = 4;
    descriptor.iProduct = 5;
    descriptor.iSerialNumber = 6;
    descriptor.bNumConfigurations = 7;
    EXPECT_EQ(UsbDescriptorBytes::of(descriptor).toHex(),
              QByteArray("12011002ef02034004f109a03412040506") + "07");
}

TEST(UsbDescriptorBytesTest, AConfigurationIsAsOnTheWireWithWhatLibusbDoesNotKnow)
{
    const unsigned char association[] = {0x08, 0x0B, 0, 1, 3, 0, 0, 0};
    const unsigned char hid[] = {0x09, 0x21, 0x11, 0x01, 0, 1, 0x22, 0x15, 0};
    const unsigned char companion[] = {0x06, 0x30, 1, 2, 3, 4};
    libusb_endpoint_descriptor endpoints[2]{};
    endpoints[0].bLength = 7;
    endpoints[0].bDescriptorType = 5;
    endpoints[0].bEndpointAddress = 0x81;
    endpoints[0].bmAttributes = 3;
    endpoints[0].wMaxPacketSize = 0x0240;
    endpoints[0].bInterval = 1;
    endpoints[0].extra = companion;
    endpoints[0].extra_length = sizeof companion;
    endpoints[1] = endpoints[0];
    endpoints[1].bLength = 9;
    endpoints[1].bRefresh = 0xAA;
    endpoints[1].bSynchAddress = 0xBB;
    endpoints[1].extra_length = 0;
    libusb_interface_descriptor settings[2]{};
    settings[0].bLength = 9;
    settings[0].bDescriptorType = 4;
    settings[0].bInterfaceNumber = 2;
    settings[0].bNumEndpoints = 2;
    settings[0].bInterfaceClass = 3;
    settings[0].endpoint = endpoints;
    settings[0].extra = hid;
    settings[0].extra_length = sizeof hid;
    settings[1].bLength = 9;
    settings[1].bDescriptorType = 4;
    settings[1].bInterfaceNumber = 2;
    settings[1].bAlternateSetting = 1;
    const libusb_interface all{settings, 2};
    libusb_config_descriptor configuration{};
    configuration.bLength = 9;
    configuration.bDescriptorType = 2;
    configuration.wTotalLength = 0x0142;
    configuration.bNumInterfaces = 1;
    configuration.bConfigurationValue = 1;
    configuration.bmAttributes = 0x80;
    configuration.MaxPower = 50;
    configuration.interface = &all;
    configuration.extra = association;
    configuration.extra_length = sizeof association;
    EXPECT_EQ(UsbDescriptorBytes::of(configuration).toHex(),
              QByteArray("090242010101008032") + "080b000103000000" + "090402000203000000" +
                  "092111010001221500" + "07058103400201" + "063001020304" + "09058103400201aabb" +
                  "090402010000000000");
}

} // namespace
