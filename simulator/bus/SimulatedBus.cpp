#include "simulator/bus/SimulatedBus.h"

#include <QtEndian>

#include <algorithm>
#include <cerrno>

namespace {

int errorNumber(BusModel::WriteResult::Failure failure)
{
    switch (failure) {
    case BusModel::WriteResult::Failure::None:
        return 0;
    case BusModel::WriteResult::Failure::Refused:
        return EPIPE; // the error of a stalled endpoint
    case BusModel::WriteResult::Failure::Broken:
        return EIO;
    case BusModel::WriteResult::Failure::Gone:
        break;
    }
    return ENODEV;
}

/// Returns the ids in a device descriptor; zeros if it is too short.
UsbIds idsIn(const QByteArray &descriptors)
{
    constexpr int vendorAt = 8;
    constexpr int productAt = 10;
    if (descriptors.size() < productAt + 2)
        return {};
    return {qFromLittleEndian<quint16>(descriptors.constData() + vendorAt),
            qFromLittleEndian<quint16>(descriptors.constData() + productAt)};
}

BusPresenter::Device shownAs(const BusModel::Device &device)
{
    const DeviceDescription &description = device.description;
    BusPresenter::Device shown;
    shown.position = description.position;
    shown.ports = description.ports;
    shown.manufacturer = description.manufacturer;
    shown.product = description.product;
    shown.serial = description.serial;
    if (device.presence == BusModel::Presence::Bootloader) {
        shown.ids = description.bootloader;
        shown.product = QStringLiteral("Simulated bootloader");
    } else {
        shown.ids = description.application;
        shown.nodes = description.nodes;
        shown.deviceClass = description.deviceClass;
    }
    const UsbIds described = idsIn(description.descriptors);
    if (described.vendorId == shown.ids.vendorId && described.productId == shown.ids.productId)
        shown.descriptors = description.descriptors;
    return shown;
}

} // namespace

SimulatedBus::SimulatedBus(const BusDescription &description, BusPresenter &presenter)
    : m_model(description),
      m_presenter(presenter),
      m_shown(m_model.devices().size(), 0)
{
    m_clock.start();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.callOnTimeout(&m_timer, [this] { update(); });
    m_presenter.setWriteHandler([this](int device, int node, const QByteArray &report) {
        const BusModel::WriteResult result = write(device, node, report);
        return BusPresenter::WriteAnswer{result.count, errorNumber(result.failure)};
    });
    update();
}

SimulatedBus::~SimulatedBus()
{
    m_presenter.setWriteHandler({});
}

bool SimulatedBus::plug(int device, BusModel::Presence as)
{
    const bool done = m_model.plug(device, as);
    update();
    return done;
}

bool SimulatedBus::unplug(int device)
{
    const bool done = m_model.unplug(device);
    update();
    return done;
}

std::optional<int> SimulatedBus::burn(int device, const QByteArray &image)
{
    return m_model.burn(device, image);
}

bool SimulatedBus::program(int device, const QByteArray &image)
{
    return m_model.program(device, image);
}

std::optional<int> SimulatedBus::reset(int device)
{
    const std::optional<int> done = m_model.reset(device, m_clock.elapsed());
    m_timer.start(0);
    return done;
}

QString SimulatedBus::applyBehaviour(int device, const QJsonObject &changes)
{
    return m_model.applyBehaviour(device, changes);
}

BusModel::WriteResult SimulatedBus::write(int device, int node, const QByteArray &report)
{
    const BusModel::WriteResult result = m_model.write(device, node, report, m_clock.elapsed());
    // Not immediately: the write must be completed before its device may disappear.
    m_timer.start(0);
    return result;
}

void SimulatedBus::update()
{
    m_model.advance(m_clock.elapsed());
    present();
    if (const std::optional<qint64> next = m_model.nextChange())
        m_timer.start(static_cast<int>(std::max<qint64>(0, *next - m_clock.elapsed())));
}

void SimulatedBus::present()
{
    const QVector<BusModel::Device> &devices = m_model.devices();
    const auto wanted = [&devices](int device) {
        return devices.at(device).presence == BusModel::Presence::Absent ? 0 : devices.at(device).appearance;
    };
    for (int device = 0; device < devices.size(); ++device) {
        if (m_shown.at(device) != 0 && m_shown.at(device) != wanted(device)) {
            m_presenter.remove(device);
            m_shown[device] = 0;
        }
    }
    // From the last to the first, so that a program that is already running lists them in bus order, too.
    for (int device = devices.size() - 1; device >= 0; --device) {
        if (wanted(device) == 0 || m_shown.at(device) == wanted(device))
            continue;
        const QString problem = m_presenter.add(device, shownAs(devices.at(device)));
        if (!problem.isEmpty() && m_error.isEmpty())
            m_error = devices.at(device).description.key + QStringLiteral(": ") + problem;
        m_shown[device] = wanted(device);
    }
}
