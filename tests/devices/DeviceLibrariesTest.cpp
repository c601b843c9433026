#include "devices/hid/HidPort.h"
#include "devices/usb/UsbBus.h"

#include <gtest/gtest.h>

#include <libusb.h>

namespace {

TEST(DeviceLibrariesTest, ABusThatWasNotInitialisedIsEmptyInsteadOfCrashing)
{
    const UsbBus::Listing listing = makeLibusbBus(false)->list();
    EXPECT_EQ(listing.count, 0);
    EXPECT_TRUE(listing.descriptors.isEmpty());
}

TEST(DeviceLibrariesTest, APathThatIsMissingOrWrongOpensNothing)
{
    const std::unique_ptr<HidPort> port = makeHidapiPort();
    EXPECT_EQ(port->openPath(QByteArray()), nullptr);
    EXPECT_EQ(port->openPath(""), nullptr);
    EXPECT_EQ(port->openPath("/nowhere/hidraw99"), nullptr);
    EXPECT_FALSE(port->openErrorText().isEmpty());
}

} // namespace
