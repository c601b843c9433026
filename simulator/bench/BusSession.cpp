#include "simulator/bench/BusSession.h"

#include "simulator/bench/BusController.h"
#include "simulator/bench/Polling.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

constexpr int readyLimitMs = 15000;
constexpr int answerLimitMs = 10000;
constexpr int graceMs = 5000;

/// The controller's own environment is the base, so what this process has and the program is not to
/// have is taken out of it, with null. A preloaded bus stays.

} // namespace

BusSession::~BusSession()
{
    m_program.killProgram();
    if (m_client.isConnected())
        m_client.request({{QLatin1String("op"), QLatin1String("quit")}}, answerLimitMs);
    m_controller.end(graceMs);
}

bool BusSession::start(const QString &descriptionFile)
{
    return startController(busControllerCommand(descriptionFile));
}

bool BusSession::startController(const QStringList &command)
{
    m_error.clear();
    if (!m_controller.start(command))
        return false;
    const QJsonObject ready = m_controller.waitForReadyLine(readyLimitMs);
    if (ready.isEmpty())
        return false;
    m_busEnvironment = ready.value(QLatin1String("environment")).toObject();
    const auto port = static_cast<quint16>(ready.value(QLatin1String("port")).toInt());
    if (m_client.connectTo(port, readyLimitMs))
        return true;
    m_error = QStringLiteral("no connection to the bus controller's port %1").arg(port);
    return false;
}

QString BusSession::errorText() const
{
    return m_error + QLatin1Char('\n') + m_controller.errorText();
}

QJsonObject BusSession::request(const QJsonObject &what)
{
    const QJsonObject answer = m_client.request(what, answerLimitMs);
    if (answer.value(QLatin1String("ok")).toBool())
        return answer;
    m_error = what.value(QLatin1String("op")).toString() + QLatin1String(": ") +
              answer.value(QLatin1String("error")).toString();
    return {};
}

bool BusSession::operate(const char *operation, QJsonObject fields)
{
    fields.insert(QLatin1String("op"), QLatin1String(operation));
    return !request(fields).isEmpty();
}

bool BusSession::run(const Launch &launch)
{
    // Started from here, not by the controller: that has threads, and a fork of it can hang.
    Launch onBus = launch;
    // The program may have a library of a test preloaded, beside the bus.
    const QString preload = QStringLiteral("LD_PRELOAD");
    const QString ownPreload = onBus.environment.value(preload);
    for (auto variable = m_busEnvironment.begin(); variable != m_busEnvironment.end(); ++variable)
        onBus.environment.insert(variable.key(), variable.value().toString());
    if (!ownPreload.isEmpty())
        onBus.environment.insert(preload, onBus.environment.value(preload) + QLatin1Char(':') + ownPreload);
    if (m_program.run(onBus))
        return true;
    m_error = m_program.errorText();
    return false;
}

ProgramHost::State BusSession::programState()
{
    return m_program.programState();
}

void BusSession::killProgram()
{
    m_program.killProgram();
}

QJsonObject BusSession::state()
{
    return request({{QLatin1String("op"), QLatin1String("state")}});
}

QJsonObject BusSession::device(const QString &key)
{
    const QJsonArray devices = state().value(QLatin1String("devices")).toArray();
    for (const QJsonValue &each : devices) {
        if (each.toObject().value(QLatin1String("key")).toString() == key)
            return each.toObject();
    }
    return {};
}

bool BusSession::waitForDevice(const QString &key, const QString &wanted, int limitMs)
{
    QJsonObject seen;
    const bool reached = pollUntil(
        [&] {
            seen = device(key);
            return seen.value(QLatin1String("state")).toString() == wanted || !m_client.isConnected();
        },
        limitMs, 20);
    if (reached && m_client.isConnected())
        return true;
    if (m_client.isConnected())
        m_error = key + QLatin1String(" was last ") +
                  QString::fromUtf8(QJsonDocument(seen).toJson(QJsonDocument::Compact));
    return false;
}

bool BusSession::plug(const QString &key)
{
    return operate("plug", {{QLatin1String("device"), key}});
}

bool BusSession::unplug(const QString &key)
{
    return operate("unplug", {{QLatin1String("device"), key}});
}

bool BusSession::saveImage(const QString &key, const QString &path)
{
    return operate("saveImage", {{QLatin1String("device"), key}, {QLatin1String("path"), path}});
}
