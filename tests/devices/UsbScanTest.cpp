#include "devices/usb/UsbScan.h"

#include "devices/models/ModelLists.h"
#include "tests/common/FakeHidPort.h"
#include "tests/common/FakeUsbBus.h"
#include "tests/devices/DeviceTestValues.h"

#include <gtest/gtest.h>

namespace {

class UsbScanTest : public testing::Test
{
protected:
    UsbScanTest()
    {
        m_previous.name = QStringLiteral("earlier");
        m_previous.vendorId = 1;
        m_previous.productId = 2;
        m_previous.iapFlag = 7;
        m_previous.hidPathFlag = 8;
        FakeHidPort port;
        m_previous.hidHandle = port.openPath("earlier");
    }
    void plug(const char *name) { m_bus.plug(model(name).vendorId, model(name).productId); }
    UsbScanResult scan(const LaunchOptions &options = LaunchOptions())
    {
        return scanListing(m_bus.list(), ModelTable(), options, m_previous);
    }

    FakeUsbBus m_bus;
    ChosenDevice m_previous;
};

TEST_F(UsbScanTest, TheFirstSupportedDeviceOnTheBusIsChosenWhateverTheTableOrder)
{
    m_bus.plug(0x1D6B, 0x0002);
    plug("DevMct");
    plug("USB");
    const UsbScanResult result = scan();
    EXPECT_TRUE(result.found);
    EXPECT_EQ(result.device.name, QStringLiteral("DevMct"));
    EXPECT_EQ(result.examined, 2) << "later devices are not examined";
}

TEST_F(UsbScanTest, AnEmptyBusFindsNothingAndDoesNotChangeTheDevice)
{
    const UsbScanResult result = scan();
    EXPECT_FALSE(result.found);
    EXPECT_EQ(result.device.name, QStringLiteral("earlier"));
    EXPECT_EQ(result.examined, 0);
}

TEST_F(UsbScanTest, AListingErrorFindsNothing)
{
    m_bus.failWith(LIBUSB_ERROR_NO_MEM);
    EXPECT_FALSE(scan().found);
}

TEST_F(UsbScanTest, UnknownDevicesFindNothing)
{
    m_bus.plug(0x1D6B, 0x0002);
    m_bus.plug(model("DevMaa").vendorId, 0xFFFF);
    const UsbScanResult result = scan();
    EXPECT_FALSE(result.found);
    EXPECT_EQ(result.examined, 2);
    EXPECT_FALSE(result.hidScanWanted || result.iapIds.has_value());
}

TEST_F(UsbScanTest, NormalModeCopiesNameIdsAndFlagsOfEveryModel)
{
    for (int number = 1; number <= 100; ++number) {
        const ModelRow &row = modelRow(number);
        m_bus.unplugAll();
        m_bus.plug(row.vendorId, row.productId);
        const UsbScanResult result = scan();
        const QString name = row.name;
        ASSERT_TRUE(result.found) << number;
        EXPECT_EQ(result.device.name, name);
        EXPECT_EQ(result.device.vendorId, row.vendorId);
        EXPECT_EQ(result.device.productId, row.productId);
        EXPECT_EQ(result.device.iapFlag, row.iapFlag);
        EXPECT_EQ(result.device.hidPathFlag, ModelLists::isHidPathModel(name) ? 1 : 0);
        EXPECT_EQ(result.hidScanWanted, ModelLists::isHidPathModel(name));
        EXPECT_EQ(result.device.hidHandle, m_previous.hidHandle) << "the scan of ids opens nothing";
        EXPECT_EQ(result.iapIds.has_value(), ModelLists::handsIdsToIapPanel(name));
    }
}

TEST_F(UsbScanTest, AHandOverModelPassesItsIdsToTheIapPanel)
{
    plug("DevMdu");
    const UsbScanResult result = scan();
    ASSERT_TRUE(result.iapIds.has_value());
    EXPECT_EQ(result.iapIds->vendorId, model("DevMdu").vendorId);
    EXPECT_EQ(result.iapIds->productId, model("DevMdu").productId);
}

TEST_F(UsbScanTest, InNormalModeDevMdhIsChosenButItsIdsAreNotPassedToTheIapPanel)
{
    plug("DevMdh");
    const UsbScanResult result = scan();
    EXPECT_EQ(result.device.name, QStringLiteral("DevMdh"));
    EXPECT_EQ(result.device.iapFlag, 1);
    EXPECT_FALSE(result.iapIds.has_value());
}

TEST_F(UsbScanTest, InZn58ModeTheRowZn58IsChosenWithoutAHidScanAndTheFlagsStay)
{
    plug("DevMaa");
    plug("ZN58");
    const UsbScanResult result = scan(zn58Mode());
    EXPECT_EQ(result.device.name, QStringLiteral("ZN58"));
    EXPECT_EQ(result.device.vendorId, model("ZN58").vendorId);
    EXPECT_EQ(result.device.productId, model("ZN58").productId);
    EXPECT_FALSE(result.hidScanWanted);
    EXPECT_EQ(result.device.hidPathFlag, 8);
    EXPECT_EQ(result.device.iapFlag, 7);
    EXPECT_EQ(result.examined, 2);
}

TEST_F(UsbScanTest, InZn58ModeADeviceWithAnotherModelsIdsIsIgnored)
{
    plug("DevMaa");
    EXPECT_FALSE(scan(zn58Mode()).found);
}

TEST_F(UsbScanTest, InTessilonixModeOnlyTheWantedModelIsChosenAndTheIapFlagIsNotCopied)
{
    plug("DevMaa");
    plug("DevMdq");
    const UsbScanResult result = scan(tessilonixMode("DevMdq"));
    EXPECT_EQ(result.device.name, QStringLiteral("DevMdq"));
    EXPECT_EQ(result.device.iapFlag, 7);
    EXPECT_EQ(result.device.hidPathFlag, 0);
    EXPECT_FALSE(result.iapIds.has_value()) << "the ids are not passed either";
    EXPECT_FALSE(scan(tessilonixMode("DevMbr")).found);
}

TEST_F(UsbScanTest, InTessilonixModeTheInterfaceOfAHidPathModelIsSearchedFor)
{
    plug("DevMbr");
    const UsbScanResult result = scan(tessilonixMode("DevMbr"));
    EXPECT_TRUE(result.hidScanWanted);
    EXPECT_EQ(result.device.hidPathFlag, 1);
}

} // namespace
