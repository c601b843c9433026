#include "devices/DescriptorDump.h"

#include "support/log/PlainFile.h"

#include <QDebug>
#include <QFile>

#include <libusb.h>

#include <array>

namespace {

struct Field
{
    const char *label;
    unsigned value;
};

std::array<Field, 12> fieldsOf(const libusb_device_descriptor &descriptor)
{
    return {{{"get_device_descriptor.bDescriptorType: ", descriptor.bDescriptorType},
             {"get_device_descriptor.bDeviceClass: ", descriptor.bDeviceClass},
             {"get_device_descriptor.bDeviceSubClass: ", descriptor.bDeviceSubClass},
             {"get_device_descriptor.bDeviceProtocol: ", descriptor.bDeviceProtocol},
             {"get_device_descriptor.bcdDevice: ", descriptor.bcdDevice},
             {"get_device_descriptor.bLength: ", descriptor.bLength},
             {"get_device_descriptor.bNumConfigurations: ", descriptor.bNumConfigurations},
             {"get_device_descriptor.bMaxPacketSize0: ", descriptor.bMaxPacketSize0},
             {"get_device_descriptor.bcdUSB: ", descriptor.bcdUSB},
             {"get_device_descriptor.iManufacturer: ", descriptor.iManufacturer},
             {"get_device_descriptor.iProduct: ", descriptor.iProduct},
             {"get_device_descriptor.iSerialNumber: ", descriptor.iSerialNumber}}};
}

// Intentional: all three numbers have the label of the first, because other programs parse this output.
QByteArray outputLine(unsigned value)
{
    return "idVendor:0x:" + QByteArray::number(value, 16).toUpper() + '\n';
}

QByteArray fileLine(const char *label, unsigned value)
{
    return label + QByteArray::number(value) + '\n';
}

} // namespace

void DescriptorDump::write(const libusb_device_descriptor &descriptor, const StandardOutput &standardOutput)
{
    standardOutput(outputLine(descriptor.idVendor) + outputLine(descriptor.idProduct));
    // printf style, because creating a stream object for each of thousands of lines a second is slow.
    qDebug("PID: %u", static_cast<unsigned>(descriptor.idProduct));
    qDebug("VID: %u", static_cast<unsigned>(descriptor.idVendor));
    for (const Field &field : fieldsOf(descriptor))
        qDebug("%s%u", field.label, field.value);
    standardOutput(outputLine(descriptor.iSerialNumber) + "\n\n");
}

QByteArray DescriptorDump::text(const libusb_device_descriptor &descriptor)
{
    QByteArray lines = fileLine("get_device_descriptor.PID: ", descriptor.idProduct) +
                       fileLine("get_device_descriptor.VID: ", descriptor.idVendor);
    for (const Field &field : fieldsOf(descriptor))
        lines += fileLine(field.label, field.value);
    return lines + QByteArray(41, '-') + '\n';
}

void DescriptorDump::append(const libusb_device_descriptor &descriptor, const QString &filePath)
{
    QFile file(filePath);
    if (!PlainFile::openToAppend(file)) {
        // Intentional: names the other log, because support searches for this text.
        qDebug("Unable to open log.txt for writing.");
        return;
    }
    file.write(text(descriptor));
}
