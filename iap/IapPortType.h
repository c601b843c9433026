#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// The ways in which the IAP programmer can be connected to a device: "USART", "USB", "CAN", "SPI" and "I2C".
namespace IapPortType {

/// Returns the types in the order of the selector.
QStringList names();

/// Returns the type's number on the command line. An unknown type counts as "USB".
int number(const QString &type);

/// Returns the baud rates or clocks to choose from; none for "USB".
QStringList rates(const QString &type);

/// The appearance of the panel's fields for a type. Fields without a value keep their appearance.
struct Appearance
{
    std::optional<QString> portLabel;
    bool addressEnabled = false;
    std::optional<bool> crcEnabled;
};

/// Returns the appearance for a type.
Appearance appearance(const QString &type);

} // namespace IapPortType
