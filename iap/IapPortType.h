#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// The ways in which the IAP programmer reaches a device: "USART", "USB", "CAN", "SPI" and "I2C".
namespace IapPortType {

/// In the order of the selector.
QStringList names();

/// As the command line names it; an unknown type counts as "USB".
int number(const QString &type);

/// The baud rates or clocks to choose from; none for "USB".
QStringList rates(const QString &type);

/// How the panel looks for a type. What is not set stays as the type before has left it.
struct Look
{
    std::optional<QString> portLabel;
    bool addressEnabled = false;
    std::optional<bool> crcEnabled;
};

Look look(const QString &type);

} // namespace IapPortType
