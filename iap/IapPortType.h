#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// The ways in which the IAP programmer reaches a device: "USART", "USB", "CAN", "SPI" and "I2C".
namespace IapPortType {

/// Returns the types in the order of the selector.
QStringList names();

/// Returns the type's number on the command line. An unknown type counts as "USB".
int number(const QString &type);

/// Returns the baud rates or clocks to choose from; none for "USB".
QStringList rates(const QString &type);

/// How the panel's fields look for a type. Fields without a value stay as the previous type left them.
struct Look
{
    std::optional<QString> portLabel;
    bool addressEnabled = false;
    std::optional<bool> crcEnabled;
};

/// Returns the look for a type.
Look look(const QString &type);

} // namespace IapPortType
