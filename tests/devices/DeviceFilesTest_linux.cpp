#include "devices/DeviceFiles_linux.h"
#include "simulator/files/WholeFile.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// A folder with the same structure as the kernel's "sys".
class DeviceFilesTest : public testing::Test
{
protected:
    void write(const char *path, const QByteArray &contents)
    {
        const QString full = m_root.filePath(QLatin1String(path));
        ASSERT_TRUE(QDir().mkpath(full.left(full.lastIndexOf(QLatin1Char('/')))));
        ASSERT_TRUE(WholeFile::write(full, contents));
    }
    QStringList found() const
    {
        QStringList lines;
        const QVector<DeviceFiles::DeviceFile> files = DeviceFiles::list(m_root.path());
        for (const DeviceFiles::DeviceFile &file : files)
            lines.append(QStringLiteral("%1 %2:%3")
                             .arg(file.path)
                             .arg(file.vendorId, 4, 16)
                             .arg(file.productId, 4, 16));
        return lines;
    }

    QTemporaryDir m_root;
};

TEST_F(DeviceFilesTest, UsbDevicesAreFoundByBusAndDeviceNumberAndInterfacesAreSkipped)
{
    write("sys/bus/usb/devices/1-1/idVendor", "33c3\n");
    write("sys/bus/usb/devices/1-1/idProduct", "8899\n");
    write("sys/bus/usb/devices/1-1/busnum", "1\n");
    write("sys/bus/usb/devices/1-1/devnum", "123\n");
    write("sys/bus/usb/devices/1-1:1.0/bInterfaceNumber", "00\n");
    write("sys/bus/usb/devices/2-4/idVendor", "F102\n");
    write("sys/bus/usb/devices/2-4/idProduct", "A002\n");
    write("sys/bus/usb/devices/2-4/busnum", "2\n");
    write("sys/bus/usb/devices/2-4/devnum", "9\n");
    EXPECT_EQ(found(), (QStringList{QStringLiteral("/dev/bus/usb/001/123 33c3:8899"),
                                    QStringLiteral("/dev/bus/usb/002/009 f102:a002")}));
}

TEST_F(DeviceFilesTest, HidInterfacesAreFoundByTheIdsOfTheirDevice)
{
    write("sys/class/hidraw/hidraw0/device/uevent",
          "DRIVER=hid-generic\nHID_ID=0003:0000F102:0000A002\nHID_NAME=HID_ID=0001:1:1\n");
    write("sys/class/hidraw/hidraw1/device/uevent", "DRIVER=hid-generic\n");
    EXPECT_EQ(found(), (QStringList{QStringLiteral("/dev/hidraw0 f102:a002")}));
}

TEST_F(DeviceFilesTest, WithoutDevicesThereAreNoFiles)
{
    EXPECT_TRUE(found().isEmpty());
}

TEST_F(DeviceFilesTest, AFileThatIsNotThereIsNotRefused)
{
    EXPECT_FALSE(DeviceFiles::isRefused(m_root.filePath(QStringLiteral("missing"))));
}

TEST_F(DeviceFilesTest, AFileThatMayBeReadAndWrittenIsNotRefused)
{
    write("open", "");
    EXPECT_FALSE(DeviceFiles::isRefused(m_root.filePath(QStringLiteral("open"))));
}

} // namespace
