#include "update/BootloaderEntry.h"

#include <QDebug>

namespace {

struct WriteResult
{
    int count = -1;
    QString errorText;
};

QString reasonForNoHandle(const HidPort &port)
{
    const QString reason = port.openErrorText();
    return reason.isEmpty() ? QStringLiteral("The device's HID interface is not open.") : reason;
}

WriteResult writeOnce(HidDevice *device, const HidPort &port, const QByteArray &report)
{
    // hidapi dereferences its handle without a check, so a null handle counts as a failed write.
    if (!device)
        return {-1, reasonForNoHandle(port)};
    const int count = device->write(report);
    return {count, count == -1 ? device->errorText() : QString()};
}

} // namespace

bool sendUpdateModeReport(const ChosenDevice &device, HidPort &port, ReportLayout layout, Reporter &reporter)
{
    reporter.runDeviceCheck(false);
    if (device.name.isEmpty()) {
        reporter.log(QStringLiteral("return becu no pvid!"));
        qDebug() << "无pvid";
        return false;
    }

    reporter.log(QStringLiteral("hid_open..."));
    const auto opened =
        port.open(static_cast<quint16>(device.vendorId), static_cast<quint16>(device.productId));
    qDebug() << device.vendorId << "???" << device.productId;
    if (!opened) {
        // Not an error for a duo device, which is written through its own handle.
        qDebug() << "open device err";
        reporter.log(QStringLiteral("one open device err"));
    }
    reporter.log(QStringLiteral("open device done"));

    reporter.log(QStringLiteral("start hid_write..."));
    const bool isDuo = device.hidPathFlag != 0;
    const WriteResult written =
        writeOnce(isDuo ? device.hidHandle.get() : opened.get(), port, updateModeReport(layout));
    qDebug().noquote() << "res:" << written.count << written.errorText;

    // Support reads 1 as "duo handle used" and 2 as "not used".
    const int duoValue = isDuo ? 1 : 2;
    reporter.log(QLatin1String("write res:") + QString::number(written.count) + written.errorText +
                 QLatin1String("CommandKind:") + QString::number(static_cast<int>(layout)) +
                 QLatin1String("IsDuoDev:") + QString::number(duoValue));
    if (written.count > 0)
        qDebug() << "send UpdateMode successfully";
    return written.count > 0;
}
