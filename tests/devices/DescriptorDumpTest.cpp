#include "devices/DescriptorDump.h"

#include "simulator/files/WholeFile.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/common/TextOnDisk.h"

#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <libusb.h>

namespace {

libusb_device_descriptor sample()
{
    libusb_device_descriptor descriptor{};
    descriptor.bLength = 18;
    descriptor.bDescriptorType = 1;
    descriptor.bcdUSB = 0x0210;
    descriptor.bDeviceClass = 239;
    descriptor.bDeviceSubClass = 2;
    descriptor.bDeviceProtocol = 3;
    descriptor.bMaxPacketSize0 = 64;
    descriptor.idVendor = 0x33C3;
    descriptor.idProduct = 0x00AB;
    descriptor.bcdDevice = 0x0100;
    descriptor.iManufacturer = 4;
    descriptor.iProduct = 5;
    descriptor.iSerialNumber = 0x1F;
    descriptor.bNumConfigurations = 6;
    return descriptor;
}

const QByteArray fields = "get_device_descriptor.bDescriptorType: 1\n"
                          "get_device_descriptor.bDeviceClass: 239\n"
                          "get_device_descriptor.bDeviceSubClass: 2\n"
                          "get_device_descriptor.bDeviceProtocol: 3\n"
                          "get_device_descriptor.bcdDevice: 256\n"
                          "get_device_descriptor.bLength: 18\n"
                          "get_device_descriptor.bNumConfigurations: 6\n"
                          "get_device_descriptor.bMaxPacketSize0: 64\n"
                          "get_device_descriptor.bcdUSB: 528\n"
                          "get_device_descriptor.iManufacturer: 4\n"
                          "get_device_descriptor.iProduct: 5\n"
                          "get_device_descriptor.iSerialNumber: 31\n";

TEST(DescriptorDumpTest, TheStandardOutputLabelsAllThreeNumbersIdVendor)
{
    const RecordedDebugStream debug;
    QByteArray output;
    DescriptorDump::write(sample(), [&output](const QByteArray &bytes) { output += bytes; });
    EXPECT_EQ(output, "idVendor:0x:33C3\nidVendor:0x:AB\nidVendor:0x:1F\n\n\n");
}

TEST(DescriptorDumpTest, TheDebugStreamGetsOneLineForEachField)
{
    const RecordedDebugStream debug;
    DescriptorDump::write(sample(), [](const QByteArray & /*bytes*/) {});
    const QByteArray expected = "PID: 171\nVID: 13251\n" + fields;
    EXPECT_EQ(debug.lines().join(QLatin1Char('\n')).toUtf8() + '\n', expected);
}

TEST(DescriptorDumpTest, TheFileGetsDecimalFieldsAndFortyOneHyphens)
{
    EXPECT_EQ(DescriptorDump::text(sample()),
              "get_device_descriptor.PID: 171\nget_device_descriptor.VID: 13251\n" + fields +
                  "-----------------------------------------\n");
}

TEST(DescriptorDumpTest, TheFileIsOnlyAppendedTo)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("UPDLog.txt"));
    DescriptorDump::append(sample(), path);
    DescriptorDump::append(sample(), path);
    EXPECT_EQ(WholeFile::read(path),
              textOnDisk(DescriptorDump::text(sample()) + DescriptorDump::text(sample())));
}

TEST(DescriptorDumpTest, AFileThatCannotBeOpenedIsReportedUnderTheOtherLogsName)
{
    const QTemporaryDir folder;
    const RecordedDebugStream debug;
    DescriptorDump::append(sample(), folder.path());
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("Unable to open log.txt for writing.")));
}

} // namespace
