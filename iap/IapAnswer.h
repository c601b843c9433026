#pragma once

#include <QString>
#include <QStringList>

/// What the IAP programmer finds on this machine. Its answer is free text in which "COM:" and
/// "device:" each begin an entry, and ";" ends it.
struct IapAnswer
{
    QStringList comPorts;
    QStringList usbDevices;
};

IapAnswer readIapAnswer(const QString &text);
