#include "app/LibraryWarnings.h"

#include "devices/DeviceLibraries.h"

#include <QCoreApplication>
#include <QMessageBox>

namespace {

void showWarning(const QString &text)
{
    QMessageBox box(QMessageBox::Warning, QStringLiteral("警告"), text, QMessageBox::Ok);
    box.setDefaultButton(QMessageBox::Ok);
    box.exec();
}

} // namespace

void LibraryWarnings::initialise(DeviceLibraries &libraries)
{
    if (!libraries.initialiseUsb())
        showWarning(QStringLiteral("libusb初始化失败"));
    if (!libraries.initialiseHid())
        showWarning(QStringLiteral("HIDAPI初始化失败"));
}

void LibraryWarnings::askToQuitAfterFailure(const DeviceLibraries &libraries)
{
    if (!libraries.usbReady() || !libraries.hidReady())
        QCoreApplication::exit(0);
}
