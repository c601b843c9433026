#include "simulator/bus/BusServer.h"

#include <QCryptographicHash>
#include <QFile>
#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTcpSocket>

namespace {

constexpr qint64 longestLine = 1 << 20;
constexpr qint64 largestImage = qint64(1) << 30;

QJsonObject failure(const QString &text)
{
    return {{QStringLiteral("ok"), false}, {QStringLiteral("error"), text}};
}

QJsonObject success()
{
    return {{QStringLiteral("ok"), true}};
}

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

} // namespace

BusServer::BusServer(SimulatedBus &bus, std::function<void()> quit) : m_bus(bus), m_quit(std::move(quit))
{
    QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            QObject::connect(socket, &QTcpSocket::readyRead, &m_server, [this, socket] { read(socket); });
            QObject::connect(socket, &QTcpSocket::disconnected, &m_server, [this, socket] {
                m_pending.remove(socket);
                socket->deleteLater();
            });
        }
    });
}

quint16 BusServer::listen()
{
    return m_server.listen(QHostAddress::LocalHost) ? m_server.serverPort() : 0;
}

void BusServer::read(QTcpSocket *socket)
{
    while (socket->state() == QAbstractSocket::ConnectedState) {
        if (m_pending.contains(socket)) {
            if (socket->bytesAvailable() < m_pending.value(socket).size)
                return;
            const Pending pending = m_pending.take(socket);
            answer(socket, pending.request, socket->read(pending.size));
            continue;
        }
        if (!socket->canReadLine()) {
            if (socket->bytesAvailable() > longestLine)
                socket->abort();
            return;
        }
        const QJsonDocument document = QJsonDocument::fromJson(socket->readLine());
        const QJsonObject request = document.object();
        const QString operation = request.value(QLatin1String("op")).toString();
        if (operation == QLatin1String("burn") || operation == QLatin1String("program")) {
            const double size = request.value(QLatin1String("size")).toDouble(-1);
            if (size < 0 || size > largestImage) {
                // What follows cannot be told from requests any more.
                socket->write(QJsonDocument(failure(QStringLiteral("\"%1\" needs a \"size\"").arg(operation)))
                                  .toJson(QJsonDocument::Compact) +
                              '\n');
                socket->disconnectFromHost();
                return;
            }
            m_pending.insert(socket, {request, static_cast<qint64>(size)});
            continue;
        }
        answer(socket, request, QByteArray());
    }
}

void BusServer::answer(QTcpSocket *socket, const QJsonObject &request, const QByteArray &payload)
{
    const QJsonObject result = perform(request, payload);
    socket->write(QJsonDocument(result).toJson(QJsonDocument::Compact) + '\n');
    if (request.value(QLatin1String("op")).toString() == QLatin1String("quit")) {
        socket->flush();
        m_quit();
    }
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
    if (operation == QLatin1String("quit"))
        return success();
    return performOnDevice(operation, request, payload);
}

QJsonObject BusServer::performOnDevice(const QString &operation, const QJsonObject &request,
                                       const QByteArray &payload)
{
    const QString key = request.value(QLatin1String("device")).toString();
    const int device = m_bus.model().indexOf(key);
    if (device < 0 && !key.isEmpty())
        return failure(QStringLiteral("no device \"%1\"").arg(key));

    if (operation == QLatin1String("burn") || operation == QLatin1String("reset")) {
        const std::optional<int> done =
            operation == QLatin1String("burn") ? m_bus.burn(device, payload) : m_bus.reset(device);
        if (!done)
            return failure(QStringLiteral("no bootloader on the bus"));
        QJsonObject result = success();
        result.insert(QStringLiteral("device"), m_bus.model().devices().at(*done).description.key);
        return result;
    }

    const bool plug = operation == QLatin1String("plug");
    if (!plug && operation != QLatin1String("unplug") && operation != QLatin1String("saveImage") &&
        operation != QLatin1String("setReportAnswer") && operation != QLatin1String("program"))
        return failure(QStringLiteral("no operation \"%1\"").arg(operation));
    if (device < 0)
        return failure(QStringLiteral("\"%1\" needs a \"device\"").arg(operation));
    if (plug) {
        const QString as = request.value(QLatin1String("as")).toString(QStringLiteral("application"));
        if (as != QLatin1String("application") && as != QLatin1String("bootloader"))
            return failure(QStringLiteral("a device is plugged as \"application\" or \"bootloader\""));
        if (!m_bus.plug(device, as == QLatin1String("bootloader") ? BusModel::Presence::Bootloader
                                                                  : BusModel::Presence::Application))
            return failure(QStringLiteral("it is on the bus already"));
        return m_bus.error().isEmpty() ? success() : failure(m_bus.error());
    }
    if (operation == QLatin1String("program"))
        return m_bus.program(device, payload)
                   ? success()
                   : failure(QStringLiteral("no microcontroller that runs its application"));
    if (operation == QLatin1String("unplug"))
        return m_bus.unplug(device) ? success() : failure(QStringLiteral("it is not on the bus"));
    if (operation == QLatin1String("saveImage")) {
        QFile file(request.value(QLatin1String("path")).toString());
        const QByteArray &image = m_bus.model().devices().at(device).received;
        if (!file.open(QIODevice::WriteOnly) || file.write(image) != image.size() || !file.flush())
            return failure(file.errorString());
        return success();
    }
    QJsonObject changes = request;
    changes.remove(QStringLiteral("op"));
    changes.remove(QStringLiteral("device"));
    const QString problem = m_bus.applyBehaviour(device, changes);
    return problem.isEmpty() ? success() : failure(problem);
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
    QJsonObject result = success();
    result.insert(QStringLiteral("devices"), devices);
    if (!m_bus.error().isEmpty())
        result.insert(QStringLiteral("busError"), m_bus.error());
    return result;
}
