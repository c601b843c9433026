#include "simulator/bus/GadgetBus_linux.h"

#include "simulator/bus/UsbRecords.h"

#include <QDir>
#include <QFile>
#include <QThread>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

const QString gadgets = QStringLiteral("/sys/kernel/config/usb_gadget/");
const QString controllers = QStringLiteral("/sys/class/udc");
constexpr int largestReport = 513;
constexpr int nodeTries = 500;

QString write(const QString &path, const QByteArray &text)
{
    QFile file(path);
    // Unbuffered: the kernel judges each write by itself, and says what is wrong with it at once.
    if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(text) == text.size())
        return {};
    return path + QLatin1String(": ") + file.errorString();
}

QByteArray hex(int value)
{
    return "0x" + QByteArray::number(value, 16);
}

QString folderOf(int id)
{
    return gadgets + QStringLiteral("quillmarsh%1").arg(id);
}

QString functionOf(int id, int index)
{
    return folderOf(id) + QStringLiteral("/functions/hid.q%1n%2").arg(id).arg(index);
}

QString loopbackOf(int id)
{
    return folderOf(id) + QStringLiteral("/functions/Loopback.q%1").arg(id);
}

} // namespace

GadgetBus::GadgetBus() = default;

GadgetBus::~GadgetBus()
{
    const QList<int> ids = m_gadgets.keys();
    for (const int id : ids)
        remove(id);
}

QString GadgetBus::startError() const
{
    if (!QDir(gadgets).exists())
        return QStringLiteral("no gadgets in configfs: is libcomposite loaded, and this root?");
    return freeController().isEmpty() ? QStringLiteral("no controller: is dummy_hcd loaded?") : QString();
}

QString GadgetBus::freeController() const
{
    QStringList names = QDir(controllers).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
    for (const auto &gadget : m_gadgets)
        names.removeAll(gadget->controller);
    return names.value(0);
}

QString GadgetBus::describe(const QString &folder, const Device &device) const
{
    QString problem;
    const auto set = [&](const QString &name, const QByteArray &text) {
        if (problem.isEmpty())
            problem = write(folder + QLatin1Char('/') + name, text);
    };
    set(QStringLiteral("idVendor"), hex(device.ids.vendorId));
    set(QStringLiteral("idProduct"), hex(device.ids.productId));
    set(QStringLiteral("bcdDevice"), "0x0100");
    set(QStringLiteral("bcdUSB"), "0x0200");
    QDir().mkpath(folder + QStringLiteral("/strings/0x409"));
    set(QStringLiteral("strings/0x409/manufacturer"), device.manufacturer.toUtf8());
    set(QStringLiteral("strings/0x409/product"), device.product.toUtf8());
    set(QStringLiteral("strings/0x409/serialnumber"), device.serial.toUtf8());
    QDir().mkpath(folder + QStringLiteral("/configs/c.1"));
    return problem;
}

QString GadgetBus::add(int id, const Device &device)
{
    const QString folder = folderOf(id);
    auto gadget = std::make_shared<Gadget>();
    gadget->controller = freeController();
    if (gadget->controller.isEmpty())
        return QStringLiteral("no controller is free");
    if (!QDir().mkdir(folder))
        return QStringLiteral("cannot make ") + folder;
    m_gadgets.insert(id, gadget);
    QString problem = describe(folder, device);
    for (int index = 0; index < device.nodes.size() && problem.isEmpty(); ++index) {
        const QString function = functionOf(id, index);
        QDir().mkdir(function);
        problem = write(function + QStringLiteral("/report_length"), QByteArray::number(largestReport));
        if (problem.isEmpty())
            problem = write(function + QStringLiteral("/report_desc"),
                            UsbRecords::reportDescriptor(device.nodes.at(index).collections));
        QFile::link(function, folder + QStringLiteral("/configs/c.1/f%1").arg(index));
    }
    // A device has an interface at least. The bootloader's is its maker's own, as the kernel's loopback is.
    if (device.nodes.isEmpty()) {
        QDir().mkdir(loopbackOf(id));
        QFile::link(loopbackOf(id), folder + QStringLiteral("/configs/c.1/loopback"));
    }
    if (problem.isEmpty())
        problem = write(folder + QStringLiteral("/UDC"), gadget->controller.toUtf8());
    gadget->nodes.resize(static_cast<std::size_t>(device.nodes.size()));
    for (int index = 0; index < device.nodes.size() && problem.isEmpty(); ++index)
        problem = open(id, index, functionOf(id, index), gadget->nodes.at(static_cast<std::size_t>(index)));
    return problem;
}

QString GadgetBus::open(int id, int index, const QString &function, Node &node)
{
    QFile number(function + QStringLiteral("/dev"));
    if (!number.open(QIODevice::ReadOnly))
        return number.errorString();
    const QByteArray minor = number.readAll().trimmed().split(':').value(1);
    const QByteArray path = "/dev/hidg" + minor;
    for (int tries = 0; tries < nodeTries && node.file < 0; ++tries) {
        node.file = ::open(path.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
        if (node.file < 0)
            QThread::msleep(10);
    }
    if (node.file < 0)
        return QString::fromUtf8(path) + QLatin1String(": ") + QString::fromUtf8(strerror(errno));
    node.notifier = std::make_unique<QSocketNotifier>(node.file, QSocketNotifier::Read);
    QObject::connect(node.notifier.get(), &QSocketNotifier::activated, node.notifier.get(),
                     [this, id, index, file = node.file] { takeReport(id, index, file); });
    return {};
}

void GadgetBus::takeReport(int id, int index, int file)
{
    QByteArray report(2 * largestReport, '\0');
    const ssize_t count = ::read(file, report.data(), static_cast<std::size_t>(report.size()));
    if (count <= 0 || !m_handler)
        return;
    report.truncate(static_cast<int>(count));
    m_handler(id, index, report);
}

void GadgetBus::remove(int id)
{
    const std::shared_ptr<Gadget> gadget = m_gadgets.take(id);
    if (!gadget)
        return;
    const QString folder = folderOf(id);
    // The host sees the device leave with this.
    write(folder + QStringLiteral("/UDC"), "\n");
    for (std::size_t index = 0; index < gadget->nodes.size(); ++index) {
        Node &node = gadget->nodes.at(index);
        // This may be called while the notifier tells of the last report.
        if (node.notifier) {
            node.notifier->setEnabled(false);
            node.notifier.release()->deleteLater();
        }
        if (node.file >= 0)
            ::close(node.file);
        QFile::remove(folder + QStringLiteral("/configs/c.1/f%1").arg(index));
        QDir().rmdir(functionOf(id, static_cast<int>(index)));
    }
    QFile::remove(folder + QStringLiteral("/configs/c.1/loopback"));
    QDir().rmdir(loopbackOf(id));
    QDir().rmdir(folder + QStringLiteral("/configs/c.1"));
    QDir().rmdir(folder + QStringLiteral("/strings/0x409"));
    QDir().rmdir(folder);
}
