#include "iap/IapPortType.h"

#include <initializer_list>

namespace {

const QLatin1String usart("USART");
const QLatin1String usb("USB");
const QLatin1String can("CAN");
const QLatin1String spi("SPI");
const QLatin1String i2c("I2C");

QStringList list(std::initializer_list<const char *> items)
{
    QStringList texts;
    for (const char *item : items)
        texts.append(QLatin1String(item));
    return texts;
}

} // namespace

QStringList IapPortType::names()
{
    return {usart, usb, can, spi, i2c};
}

int IapPortType::number(const QString &type)
{
    const int known = names().indexOf(type);
    return known < 0 ? 1 : known;
}

QStringList IapPortType::rates(const QString &type)
{
    if (type == usart)
        return list({"110", "300", "600", "1200", "2400", "4800", "9600", "14400", "19200", "38400", "57600",
                     "115200", "128000", "230400", "256000", "460800", "921600", "1228800", "1382400"});
    if (type == can)
        return list({"1Mbit", "500Kbit", "250Kbit", "125Kbit"});
    if (type == spi)
        return list({"13.5MHz", "6.75MHz", "3.375MHz", "1.6875MHz", "0.84375MHz"});
    if (type == i2c)
        return list({"1M", "400K", "200K", "100K", "50K", "10K"});
    return {};
}

IapPortType::Appearance IapPortType::appearance(const QString &type)
{
    if (type == usart)
        return {QStringLiteral("Port Name: "), false, false};
    if (type == usb)
        return {QStringLiteral("USB Device: "), false, true};
    if (type == can || type == spi)
        return {std::nullopt, false, std::nullopt};
    // Intentional: without the space at the end of the label for "USART".
    return {QStringLiteral("Port Name:"), true, true};
}
