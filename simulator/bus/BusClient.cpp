#include "simulator/bus/BusClient.h"

#include <QJsonArray>

namespace {
constexpr int answerLimitMs = 30000;
}

bool BusClient::connectTo(quint16 port)
{
    if (m_client.connectTo(port, answerLimitMs))
        return true;
    m_error = QStringLiteral("no bus controller on port %1").arg(port);
    return false;
}

bool BusClient::connectToOwnBus()
{
    const QString address = qEnvironmentVariable("QUILLMARSH_SIM_BUS");
    const quint16 port = address.mid(address.lastIndexOf(QLatin1Char(':')) + 1).toUShort();
    if (port != 0)
        return connectTo(port);
    m_error = QStringLiteral("QUILLMARSH_SIM_BUS names no bus");
    return false;
}

QJsonObject BusClient::request(const QJsonObject &request, const QByteArray &payload)
{
    const QJsonObject answer = m_client.request(request, answerLimitMs, payload);
    m_error = answer.value(QLatin1String("error")).toString();
    return answer;
}

bool BusClient::done(const char *operation, const QString &device, QJsonObject fields,
                     const QByteArray &payload)
{
    fields.insert(QStringLiteral("op"), QLatin1String(operation));
    if (!device.isEmpty())
        fields.insert(QStringLiteral("device"), device);
    return request(fields, payload).value(QLatin1String("ok")).toBool();
}

QJsonObject BusClient::state()
{
    const QJsonObject answer = request({{QStringLiteral("op"), QStringLiteral("state")}});
    return answer.value(QLatin1String("ok")).toBool() ? answer : QJsonObject();
}

QJsonObject BusClient::device(const QString &key)
{
    const QJsonArray devices = state().value(QLatin1String("devices")).toArray();
    for (const QJsonValue &device : devices) {
        if (device.toObject().value(QLatin1String("key")).toString() == key)
            return device.toObject();
    }
    return {};
}

bool BusClient::plug(const QString &key)
{
    return done("plug", key);
}

bool BusClient::plugBootloader(const QString &key)
{
    return done("plug", key, {{QStringLiteral("as"), QStringLiteral("bootloader")}});
}

bool BusClient::unplug(const QString &key)
{
    return done("unplug", key);
}

bool BusClient::burn(const QByteArray &image, const QString &key)
{
    return done("burn", key, {{QStringLiteral("size"), image.size()}}, image);
}

bool BusClient::reset(const QString &key)
{
    return done("reset", key);
}

bool BusClient::program(const QByteArray &image, const QString &key)
{
    return done("program", key, {{QStringLiteral("size"), image.size()}}, image);
}

bool BusClient::saveImage(const QString &key, const QString &path)
{
    return done("saveImage", key, {{QStringLiteral("path"), path}});
}

bool BusClient::setReportAnswer(const QString &key, const QJsonObject &changes)
{
    return done("setReportAnswer", key, changes);
}

bool BusClient::quit()
{
    return done("quit", QString());
}
