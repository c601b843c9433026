#include "simulator/bus/BusServer.h"

#include "simulator/files/WholeFile.h"
#include "simulator/jsonlines/Answer.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QTimer>

namespace {

constexpr qint64 largestImage = qint64(1) << 30;

QString text(BusModel::Presence presence)
{
    switch (presence) {
    case BusModel::Presence::Application:
        return QStringLiteral("application");
    case BusModel::Presence::Bootloader:
        return QStringLiteral("bootloader");
    case BusModel::Presence::Absent:
        break;
    }
    return QStringLiteral("absent");
}

bool isWithImage(const QString &operation)
{
    return operation == QLatin1String("burn") || operation == QLatin1String("program");
}

} // namespace

BusServer::BusServer(SimulatedBus &bus, std::function<void()> quit)
    : m_bus(bus),
      m_quit(std::move(quit)),
      m_server(
          [this](const QJsonObject &request, const QByteArray &payload) { return perform(request, payload); },
          imageSize)
{
}

std::optional<qint64> BusServer::imageSize(const QJsonObject &request)
{
    if (!isWithImage(request.value(QLatin1String("op")).toString()))
        return 0;
    const double size = request.value(QLatin1String("size")).toDouble(-1);
    if (size < 0 || size > largestImage)
        return std::nullopt;
    return static_cast<qint64>(size);
}

QJsonObject BusServer::perform(const QJsonObject &request, const QByteArray &payload)
{
    if (m_further) {
        if (const std::optional<QJsonObject> answer = m_further(request))
            return *answer;
    }
    const QString operation = request.value(QLatin1String("op")).toString();
    if (operation == QLatin1String("state"))
        return state();
    if (operation == QLatin1String("quit")) {
        // Quits after the answer has been sent.
        QTimer::singleShot(0, m_quit);
        return Answer::success();
    }
    if (!imageSize(request))
        return Answer::failure(QStringLiteral("\"%1\" needs a \"size\"").arg(operation));
    return performOnDevice(operation, request, payload);
}

QJsonObject BusServer::performOnDevice(const QString &operation, const QJsonObject &request,
                                       const QByteArray &payload)
{
    const QString key = request.value(QLatin1String("device")).toString();
    const int device = m_bus.model().indexOf(key);
    if (device < 0 && !key.isEmpty())
        return Answer::failure(QStringLiteral("no device \"%1\"").arg(key));

    if (operation == QLatin1String("burn") || operation == QLatin1String("reset")) {
        const std::optional<int> done =
            operation == QLatin1String("burn") ? m_bus.burn(device, payload) : m_bus.reset(device);
        if (!done)
            return Answer::failure(QStringLiteral("no bootloader on the bus"));
        QJsonObject result = Answer::success();
        result.insert(QStringLiteral("device"), m_bus.model().devices().at(*done).description.key);
        return result;
    }

    const bool plug = operation == QLatin1String("plug");
    if (!plug && operation != QLatin1String("unplug") && operation != QLatin1String("saveImage") &&
        operation != QLatin1String("setReportAnswer") && operation != QLatin1String("program"))
        return Answer::failure(QStringLiteral("no operation \"%1\"").arg(operation));
    if (device < 0)
        return Answer::failure(QStringLiteral("\"%1\" needs a \"device\"").arg(operation));
    if (plug) {
        const QString as = request.value(QLatin1String("as")).toString(QStringLiteral("application"));
        if (as != QLatin1String("application") && as != QLatin1String("bootloader"))
            return Answer::failure(
                QStringLiteral("a device is plugged as \"application\" or \"bootloader\""));
        if (!m_bus.plug(device, as == QLatin1String("bootloader") ? BusModel::Presence::Bootloader
                                                                  : BusModel::Presence::Application))
            return Answer::failure(QStringLiteral("it is on the bus already"));
        return m_bus.error().isEmpty() ? Answer::success() : Answer::failure(m_bus.error());
    }
    if (operation == QLatin1String("program"))
        return m_bus.program(device, payload)
                   ? Answer::success()
                   : Answer::failure(QStringLiteral("no microcontroller that runs its application"));
    if (operation == QLatin1String("unplug"))
        return m_bus.unplug(device) ? Answer::success()
                                    : Answer::failure(QStringLiteral("it is not on the bus"));
    if (operation == QLatin1String("saveImage")) {
        const QString path = request.value(QLatin1String("path")).toString();
        return WholeFile::write(path, m_bus.model().devices().at(device).received)
                   ? Answer::success()
                   : Answer::failure(QStringLiteral("cannot write ") + path);
    }
    QJsonObject changes = request;
    changes.remove(QStringLiteral("op"));
    changes.remove(QStringLiteral("device"));
    const QString problem = m_bus.applyBehaviour(device, changes);
    return problem.isEmpty() ? Answer::success() : Answer::failure(problem);
}

QJsonObject BusServer::state() const
{
    QJsonArray devices;
    for (const BusModel::Device &device : m_bus.model().devices()) {
        QJsonArray reports;
        for (const QByteArray &report : device.reports)
            reports.append(QString::fromLatin1(report.toHex()));
        const QByteArray md5 = QCryptographicHash::hash(device.received, QCryptographicHash::Md5).toHex();
        devices.append(QJsonObject{
            {QStringLiteral("key"), device.description.key},
            {QStringLiteral("name"), device.description.name},
            {QStringLiteral("state"), text(device.presence)},
            {QStringLiteral("vendorId"), device.description.application.vendorId},
            {QStringLiteral("productId"), device.description.application.productId},
            {QStringLiteral("programmable"), device.description.programmable},
            {QStringLiteral("receivedBytes"), device.received.size()},
            {QStringLiteral("receivedMd5"), device.burns ? QString::fromLatin1(md5) : QString()},
            {QStringLiteral("reports"), reports},
            {QStringLiteral("burns"), device.burns},
            {QStringLiteral("resets"), device.resets},
        });
    }
    QJsonObject result = Answer::success();
    result.insert(QStringLiteral("devices"), devices);
    if (!m_bus.error().isEmpty())
        result.insert(QStringLiteral("busError"), m_bus.error());
    return result;
}
