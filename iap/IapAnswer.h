#pragma once

#include <QString>
#include <QStringList>

/// The ports and devices that the IAP programmer finds on this computer. Its answer is free text in which
/// "COM:" and "device:" each begin an entry, and ";" ends it.
struct IapAnswer
{
    QStringList comPorts;
    QStringList usbDevices;
};

/// Parses the programmer's answer to "GetData".
IapAnswer readIapAnswer(const QString &text);
