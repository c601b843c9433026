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
QJsonObject asJson(const QProcessEnvironment &environment)
{
    QJsonObject fields;
    const QStringList inherited = QProcessEnvironment::systemEnvironment().keys();
    for (const QString &name : inherited) {
        if (name != QLatin1String("LD_PRELOAD"))
            fields.insert(name, QJsonValue());
    }
    const QStringList names = environment.keys();
    for (const QString &name : names)
        fields.insert(name, environment.value(name));
    return fields;
}

} // namespace

BusSession::~BusSession()
{
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
    const quint16 port = m_controller.waitForPort(readyLimitMs);
    if (port == 0)
        return false;
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
    return operate("run", {{QLatin1String("program"), launch.program},
                           {QLatin1String("arguments"), QJsonArray::fromStringList(launch.arguments)},
                           {QLatin1String("workingDirectory"), launch.workingDirectory},
                           {QLatin1String("environment"), asJson(launch.environment)},
                           {QLatin1String("stdout"), launch.stdoutFile},
                           {QLatin1String("stderr"), launch.stderrFile}});
}

ProgramHost::State BusSession::programState()
{
    const QJsonObject fields = state().value(QLatin1String("program")).toObject();
    State program;
    program.running = fields.value(QLatin1String("running")).toBool();
    program.signalled = fields.value(QLatin1String("signalled")).toBool();
    const QJsonValue exitCode = fields.value(QLatin1String("exitCode"));
    if (exitCode.isDouble() && !program.signalled)
        program.exitCode = exitCode.toInt();
    return program;
}

void BusSession::killProgram()
{
    operate("kill");
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
