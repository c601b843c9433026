#pragma once

#include <QString>
#include <QStringList>

/// What one start of the IAP programmer is about; made anew for each.
struct IapRun
{
    QString portType;
    /// What is selected in the address field, which is not what the command line gets.
    QString address;
    quint32 vendorId = 0;
    quint32 productId = 0;
    QStringList comPorts;
    QStringList usbDevices;
    QString baudRate;
    /// What is selected in the start address's field, likewise.
    QString appStartAddress;
    bool crcVerify = false;
    QString updateFile;
};
