#pragma once

#include <QString>
#include <QStringList>

/// One start of the IAP programmer.
struct IapRun
{
    QString portType;
    /// Intentional: the selected text of the address field. The command line gets the whole text.
    QString address;
    quint32 vendorId = 0;
    quint32 productId = 0;
    QStringList comPorts;
    QStringList usbDevices;
    QString baudRate;
    /// Intentional: the selected text of the start address field, likewise.
    QString appStartAddress;
    bool crcVerify = false;
    QString updateFile;
};
