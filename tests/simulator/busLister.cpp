// A client of the simulated bus: performs the operations in its arguments one after the other with the real
// libusb and hidapi, and prints a JSON line for each.
//
//   list                     lists what both libraries see
//   open-path PATH           opens an interface for the following writes
//   open-ids VENDOR PRODUCT  the same, by ids
//   write HEX                writes these bytes
//   wait-file FILE           waits until the file exists
//   watch FILE               lists without a pause until the file exists, prints how often, and how
//                            many interfaces without a path it came across

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QThread>

#include <hidapi.h>
#include <libusb.h>

#include <cstdio>

namespace {

void print(const QJsonObject &line)
{
    printf("%s\n", QJsonDocument(line).toJson(QJsonDocument::Compact).constData());
    fflush(stdout);
}

QJsonArray usbDevices()
{
    QJsonArray devices;
    libusb_device **list = nullptr;
    const ssize_t count = libusb_get_device_list(nullptr, &list);
    for (ssize_t i = 0; i < count; ++i) {
        libusb_device_descriptor descriptor{};
        if (libusb_get_device_descriptor(list[i], &descriptor) == 0)
            devices.append(QStringLiteral("%1:%2")
                               .arg(descriptor.idVendor, 4, 16, QLatin1Char('0'))
                               .arg(descriptor.idProduct, 4, 16, QLatin1Char('0')));
    }
    if (count >= 0)
        libusb_free_device_list(list, 1);
    return devices;
}

QJsonArray hidInterfaces()
{
    QJsonArray interfaces;
    hid_device_info *list = hid_enumerate(0, 0);
    for (const hid_device_info *info = list; info; info = info->next)
        interfaces.append(QJsonObject{
            {QStringLiteral("ids"), QStringLiteral("%1:%2")
                                        .arg(info->vendor_id, 4, 16, QLatin1Char('0'))
                                        .arg(info->product_id, 4, 16, QLatin1Char('0'))},
            {QStringLiteral("path"), info->path ? QJsonValue(QString::fromUtf8(info->path)) : QJsonValue()},
            {QStringLiteral("interface"), info->interface_number},
            {QStringLiteral("usage"), info->usage},
        });
    hid_free_enumeration(list);
    return interfaces;
}

class Session
{
public:
    ~Session()
    {
        if (m_open)
            hid_close(m_open);
    }

    void open(hid_device *device)
    {
        if (m_open)
            hid_close(m_open);
        m_open = device;
        print({{QStringLiteral("opened"), device != nullptr}});
    }

    void write(const QByteArray &bytes)
    {
        const int written =
            m_open ? hid_write(m_open, reinterpret_cast<const unsigned char *>(bytes.constData()),
                               static_cast<size_t>(bytes.size()))
                   : -2;
        print({{QStringLiteral("written"), written}});
    }

private:
    hid_device *m_open = nullptr;
};

void perform(Session &session, QStringList &arguments)
{
    const QString command = arguments.takeFirst();
    const auto next = [&arguments] {
        return arguments.isEmpty() ? QString() : arguments.takeFirst();
    };
    if (command == QLatin1String("list")) {
        print({{QStringLiteral("usb"), usbDevices()}, {QStringLiteral("hid"), hidInterfaces()}});
    } else if (command == QLatin1String("open-path")) {
        session.open(hid_open_path(next().toUtf8().constData()));
    } else if (command == QLatin1String("open-ids")) {
        const ushort vendor = next().toUShort(nullptr, 0);
        session.open(hid_open(vendor, next().toUShort(nullptr, 0), nullptr));
    } else if (command == QLatin1String("write")) {
        session.write(QByteArray::fromHex(next().toLatin1()));
    } else if (command == QLatin1String("wait-file")) {
        const QString file = next();
        while (!QFile::exists(file))
            QThread::msleep(2);
    } else if (command == QLatin1String("wait-bus")) {
        // libusb handles events with a delay on its own thread, and interfaces appear after their device.
        const int devices = next().toInt();
        const int interfaces = next().toInt();
        while (usbDevices().size() != devices || hidInterfaces().size() != interfaces)
            QThread::msleep(2);
    } else if (command == QLatin1String("watch")) {
        const QString file = next();
        int times = 0;
        int nullPaths = 0;
        for (; !QFile::exists(file); ++times) {
            usbDevices();
            const QJsonArray interfaces = hidInterfaces();
            for (const QJsonValue &entry : interfaces)
                nullPaths += entry.toObject().value(QLatin1String("path")).isNull() ? 1 : 0;
        }
        print({{QStringLiteral("times"), times}, {QStringLiteral("nullPaths"), nullPaths}});
    }
}

} // namespace

int main(int argc, char *argv[])
{
    if (libusb_init(nullptr) != 0 || hid_init() != 0)
        return 3;
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    {
        Session session;
        while (!arguments.isEmpty())
            perform(session, arguments);
    }
    hid_exit();
    libusb_exit(nullptr);
    return 0;
}
