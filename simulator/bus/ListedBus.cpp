#include "simulator/bus/ListedBus.h"

#include "simulator/bus/UsbRecords.h"
#include "simulator/bus/WindowsHidPath.h"
#include "simulator/jsonlines/Answer.h"

#include <QJsonArray>

#include <algorithm>
#include <cerrno>

namespace {

constexpr int deviceDescriptorBytes = 18;

QString deviceDescriptor(const BusPresenter::Device &device)
{
    return QString::fromLatin1(UsbRecords::descriptors(device).left(deviceDescriptorBytes).toHex());
}

BusPresenter::Device rootHub()
{
    BusPresenter::Device hub;
    hub.ids = {0x1D6B, 0x0002};
    return hub;
}

/// Returns a name for the error, because error numbers differ between systems.
QString nameOf(int errorNumber)
{
    switch (errorNumber) {
    case EPIPE:
        return QStringLiteral("refused");
    case EIO:
        return QStringLiteral("broken");
    default:
        return QStringLiteral("gone");
    }
}

QJsonObject hidInterface(const BusPresenter::Device &device, int node, int collection)
{
    const HidNodeDescription &described = device.nodes.at(node);
    const QByteArray path = WindowsHidPath::of(device, node, collection);
    return {
        {QStringLiteral("path"), described.pathless ? QJsonValue() : QJsonValue(QString::fromUtf8(path))},
        {QStringLiteral("vendorId"), device.ids.vendorId},
        {QStringLiteral("productId"), device.ids.productId},
        {QStringLiteral("interfaceNumber"), described.number},
        {QStringLiteral("manufacturer"), device.manufacturer},
        {QStringLiteral("product"), device.product},
        {QStringLiteral("serial"), device.serial},
    };
}

} // namespace

ListedBus::ListedBus(bool rootHub) : m_rootHub(rootHub) {}

QString ListedBus::add(int id, const Device &device)
{
    m_shown.insert(id, {device, ++m_lastAppearance});
    return QString();
}

void ListedBus::remove(int id)
{
    m_shown.remove(id);
}

std::optional<QJsonObject> ListedBus::perform(const QJsonObject &request)
{
    const QString operation = request.value(QLatin1String("op")).toString();
    const int handle = request.value(QLatin1String("handle")).toInt(-1);
    if (operation == QLatin1String("usbDevices"))
        return usbDevices();
    if (operation == QLatin1String("hidInterfaces"))
        return hidInterfaces();
    if (operation == QLatin1String("hidOpen"))
        return open(request.value(QLatin1String("path")).toString().toUtf8());
    if (operation == QLatin1String("hidWrite"))
        return write(handle,
                     QByteArray::fromHex(request.value(QLatin1String("report")).toString().toLatin1()));
    if (operation == QLatin1String("hidClose"))
        return m_opened.remove(handle) > 0 ? Answer::success()
                                           : Answer::failure(QStringLiteral("no such handle"));
    if (operation == QLatin1String("hidOpened"))
        return Answer::success({{QStringLiteral("count"), m_opened.size()}});
    return std::nullopt;
}

QList<int> ListedBus::inBusOrder() const
{
    QList<int> ids = m_shown.keys();
    std::stable_sort(ids.begin(), ids.end(), [this](int left, int right) {
        return m_shown[left].device.position < m_shown[right].device.position;
    });
    return ids;
}

QJsonObject ListedBus::usbDevices() const
{
    QJsonArray devices;
    QJsonArray configurations;
    QJsonArray ports;
    const auto list = [&](const BusPresenter::Device &device) {
        devices.append(deviceDescriptor(device));
        configurations.append(
            QString::fromLatin1(UsbRecords::descriptors(device).mid(deviceDescriptorBytes).toHex()));
        ports.append(device.ports);
    };
    const QList<int> ids = inBusOrder();
    for (const int id : ids)
        list(m_shown[id].device);
    if (m_rootHub)
        list(rootHub());
    return Answer::success({{QStringLiteral("devices"), devices},
                            {QStringLiteral("configurations"), configurations},
                            {QStringLiteral("ports"), ports}});
}

QJsonObject ListedBus::hidInterfaces() const
{
    QJsonArray interfaces;
    const QList<int> ids = inBusOrder();
    for (const int id : ids) {
        const Device &device = m_shown[id].device;
        for (int node = 0; node < device.nodes.size(); ++node) {
            for (int collection = 1; collection <= WindowsHidPath::collectionsOf(device.nodes.at(node));
                 ++collection)
                interfaces.append(hidInterface(device, node, collection));
        }
    }
    return Answer::success({{QStringLiteral("interfaces"), interfaces}});
}

QJsonObject ListedBus::open(const QByteArray &path)
{
    for (auto shown = m_shown.cbegin(); shown != m_shown.cend(); ++shown) {
        const Device &device = shown->device;
        for (int node = 0; node < device.nodes.size(); ++node) {
            const HidNodeDescription &described = device.nodes.at(node);
            for (int collection = 1; collection <= WindowsHidPath::collectionsOf(described); ++collection) {
                // Windows ignores letter case in these paths.
                if (WindowsHidPath::of(device, node, collection).compare(path, Qt::CaseInsensitive) != 0 ||
                    described.pathless)
                    continue;
                if (!described.openable)
                    return Answer::failure(QStringLiteral("denied"));
                m_opened.insert(++m_lastHandle, {shown.key(), node, shown->appearance});
                return Answer::success({{QStringLiteral("handle"), m_lastHandle}});
            }
        }
    }
    return Answer::failure(QStringLiteral("gone"));
}

QJsonObject ListedBus::write(int handle, const QByteArray &report) const
{
    const auto opened = m_opened.find(handle);
    if (opened == m_opened.end())
        return Answer::failure(QStringLiteral("no such handle"));
    const auto shown = m_shown.find(opened->device);
    if (shown == m_shown.end() || shown->appearance != opened->appearance || !m_handler)
        return Answer::failure(QStringLiteral("gone"));
    const WriteAnswer answer = m_handler(opened->device, opened->node, report);
    return answer.count < 0 ? Answer::failure(nameOf(answer.errorNumber))
                            : Answer::success({{QStringLiteral("count"), answer.count}});
}
