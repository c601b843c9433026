#include "iap/IapPortType.h"

#include <gtest/gtest.h>

namespace {

const QString usart = QStringLiteral("USART");
const QString usb = QStringLiteral("USB");
const QString can = QStringLiteral("CAN");
const QString spi = QStringLiteral("SPI");
const QString i2c = QStringLiteral("I2C");

QString joined(const QString &type)
{
    return IapPortType::rates(type).join(QLatin1Char(' '));
}

TEST(IapPortTypeTest, TheFiveTypesAreNumberedInTheirOrderAndAnyOtherIsUsb)
{
    EXPECT_EQ(IapPortType::names(), (QStringList{usart, usb, can, spi, i2c}));
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(IapPortType::number(IapPortType::names().at(i)), i);
    for (const char *other : {"", "usart", "LIN"})
        EXPECT_EQ(IapPortType::number(QLatin1String(other)), 1) << other;
}

TEST(IapPortTypeTest, EachTypeHasItsRates)
{
    EXPECT_EQ(IapPortType::rates(usart).size(), 19);
    EXPECT_EQ(joined(usart), QStringLiteral("110 300 600 1200 2400 4800 9600 14400 19200 38400 57600 115200 "
                                            "128000 230400 256000 460800 921600 1228800 1382400"));
    EXPECT_EQ(joined(can), QStringLiteral("1Mbit 500Kbit 250Kbit 125Kbit"));
    EXPECT_EQ(joined(spi), QStringLiteral("13.5MHz 6.75MHz 3.375MHz 1.6875MHz 0.84375MHz"));
    EXPECT_EQ(joined(i2c), QStringLiteral("1M 400K 200K 100K 50K 10K"));
    EXPECT_TRUE(IapPortType::rates(usb).isEmpty());
    EXPECT_TRUE(IapPortType::rates(QStringLiteral("LIN")).isEmpty());
}

TEST(IapPortTypeTest, AUsartHasNoAddressAndNoCheck)
{
    const IapPortType::Appearance look = IapPortType::appearance(usart);
    EXPECT_EQ(look.portLabel, QStringLiteral("Port Name: "));
    EXPECT_FALSE(look.addressEnabled);
    EXPECT_EQ(look.crcEnabled, false);
}

TEST(IapPortTypeTest, UsbNamesDevicesAndCanCheck)
{
    const IapPortType::Appearance look = IapPortType::appearance(usb);
    EXPECT_EQ(look.portLabel, QStringLiteral("USB Device: "));
    EXPECT_FALSE(look.addressEnabled);
    EXPECT_EQ(look.crcEnabled, true);
}

TEST(IapPortTypeTest, CanAndSpiDoNotChangeLabelAndCheck)
{
    for (const QString &type : {can, spi}) {
        const IapPortType::Appearance look = IapPortType::appearance(type);
        EXPECT_FALSE(look.portLabel.has_value());
        EXPECT_FALSE(look.addressEnabled);
        EXPECT_FALSE(look.crcEnabled.has_value());
    }
}

TEST(IapPortTypeTest, TheLabelOfI2cHasNoBlankAtItsEndUnlikeThatOfUsart)
{
    const IapPortType::Appearance look = IapPortType::appearance(i2c);
    EXPECT_EQ(look.portLabel, QStringLiteral("Port Name:"));
    EXPECT_TRUE(look.addressEnabled);
    EXPECT_EQ(look.crcEnabled, true);
}

} // namespace
