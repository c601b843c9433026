#include "simulator/bus/BusClient.h"

#include <QDeadlineTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QThread>

namespace {

constexpr int answerTimeoutMs = 30000;

QJsonObject operation(const QString &name, const QString &device = QString())
{
    QJsonObject request{{QStringLiteral("op"), name}};
    if (!device.isEmpty())
        request.insert(QStringLiteral("device"), device);
    return request;
}

} // namespace

bool BusClient::connectTo(const QString &address)
{
    const int colon = address.lastIndexOf(QLatin1Char(':'));
    m_socket.connectToHost(address.left(colon), address.mid(colon + 1).toUShort());
    if (m_socket.waitForConnected(answerTimeoutMs))
        return true;
    m_error = QStringLiteral("no bus at \"%1\": %2").arg(address, m_socket.errorString());
    return false;
}

bool BusClient::connectToOwnBus()
{
    const QString address = qEnvironmentVariable("QUILLMARSH_SIM_BUS");
    if (!address.isEmpty())
        return connectTo(address);
    m_error = QStringLiteral("QUILLMARSH_SIM_BUS names no bus");
    return false;
}

QJsonObject BusClient::request(const QJsonObject &request, const QByteArray &payload)
{
    m_error.clear();
    m_socket.write(QJsonDocument(request).toJson(QJsonDocument::Compact) + '\n');
    m_socket.write(payload);
    const QDeadlineTimer deadline(answerTimeoutMs);
    while (m_socket.bytesToWrite() > 0) {
        if (!m_socket.waitForBytesWritten(static_cast<int>(deadline.remainingTime())))
            break;
    }
    while (!m_socket.canReadLine()) {
        if (!m_socket.waitForReadyRead(static_cast<int>(deadline.remainingTime())))
            break;
    }
    if (!m_socket.canReadLine()) {
        m_error = QStringLiteral("no answer from the bus: ") + m_socket.errorString();
        return {{QStringLiteral("ok"), false}, {QStringLiteral("error"), m_error}};
    }
    const QJsonObject answer = QJsonDocument::fromJson(m_socket.readLine()).object();
    m_error = answer.value(QLatin1String("error")).toString();
    return answer;
}

bool BusClient::done(const QJsonObject &toDo, const QByteArray &payload)
{
    return request(toDo, payload).value(QLatin1String("ok")).toBool();
}

QJsonObject BusClient::state()
{
    return request(operation(QStringLiteral("state")));
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

QJsonObject BusClient::program()
{
    return state().value(QLatin1String("program")).toObject();
}

bool BusClient::run(const QString &program, const QStringList &arguments, const QJsonObject &more)
{
    QJsonObject toDo = more;
    toDo.insert(QStringLiteral("op"), QStringLiteral("run"));
    toDo.insert(QStringLiteral("program"), program);
    toDo.insert(QStringLiteral("arguments"), QJsonArray::fromStringList(arguments));
    return done(toDo);
}

bool BusClient::plug(const QString &key)
{
    return done(operation(QStringLiteral("plug"), key));
}

bool BusClient::plugBootloader(const QString &key)
{
    QJsonObject toDo = operation(QStringLiteral("plug"), key);
    toDo.insert(QStringLiteral("as"), QStringLiteral("bootloader"));
    return done(toDo);
}

bool BusClient::unplug(const QString &key)
{
    return done(operation(QStringLiteral("unplug"), key));
}

bool BusClient::burn(const QByteArray &image, const QString &key)
{
    QJsonObject toDo = operation(QStringLiteral("burn"), key);
    toDo.insert(QStringLiteral("size"), image.size());
    return done(toDo, image);
}

bool BusClient::reset(const QString &key)
{
    return done(operation(QStringLiteral("reset"), key));
}

bool BusClient::saveImage(const QString &key, const QString &path)
{
    QJsonObject toDo = operation(QStringLiteral("saveImage"), key);
    toDo.insert(QStringLiteral("path"), path);
    return done(toDo);
}

bool BusClient::setReportAnswer(const QString &key, const QJsonObject &changes)
{
    QJsonObject toDo = changes;
    toDo.insert(QStringLiteral("op"), QStringLiteral("setReportAnswer"));
    toDo.insert(QStringLiteral("device"), key);
    return done(toDo);
}

bool BusClient::kill()
{
    return done(operation(QStringLiteral("kill")));
}

bool BusClient::quit()
{
    return done(operation(QStringLiteral("quit")));
}

bool BusClient::waitUntil(int timeoutMs, const std::function<bool()> &condition)
{
    const QDeadlineTimer deadline(timeoutMs);
    while (!condition()) {
        if (m_socket.state() != QAbstractSocket::ConnectedState)
            return false;
        if (deadline.hasExpired()) {
            m_error = QStringLiteral("it did not happen within %1 ms").arg(timeoutMs);
            return false;
        }
        QThread::msleep(10);
    }
    return true;
}

bool BusClient::waitForState(const QString &key, const QString &wanted, int timeoutMs)
{
    return waitUntil(timeoutMs,
                     [&] { return device(key).value(QLatin1String("state")).toString() == wanted; });
}

bool BusClient::waitForProgramEnd(int timeoutMs)
{
    return waitUntil(timeoutMs, [&] { return !program().value(QLatin1String("running")).toBool(true); });
}
