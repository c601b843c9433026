#include "harness/session/BusSession.h"

#include "harness/process/Polling.h"
#include "harness/session/BusControllerCommand.h"

#include <QJsonDocument>

namespace {
constexpr int controllerGraceMs = 5000;
} // namespace

BusSession::~BusSession()
{
    m_program.killProgram();
    if (m_client.isConnected())
        m_client.quit();
    m_controller.end(controllerGraceMs);
}

bool BusSession::start(const QString &descriptionFile)
{
    return startController(busControllerCommand(descriptionFile));
}

bool BusSession::startController(const QStringList &command)
{
    if (!m_controller.start(command))
        return false;
    const QJsonObject ready = m_controller.waitForReadyLine();
    if (ready.isEmpty())
        return false;
    m_busEnvironment = ready.value(QLatin1String("environment")).toObject();
    return m_client.connectTo(static_cast<quint16>(ready.value(QLatin1String("port")).toInt()));
}

QString BusSession::errorText() const
{
    return QStringList{m_error, m_client.errorText(), m_program.errorText(), m_controller.errorText()}.join(
        QLatin1Char('\n'));
}

bool BusSession::run(const Launch &launch)
{
    // Started by this process, because a fork of the controller, which has several threads, may hang.
    Launch onBus = launch;
    // A test may preload a library of its own in addition to those of the bus.
    const QString preload = QStringLiteral("LD_PRELOAD");
    const QString ownPreload = onBus.environment.value(preload);
    for (auto variable = m_busEnvironment.begin(); variable != m_busEnvironment.end(); ++variable)
        onBus.environment.insert(variable.key(), variable.value().toString());
    if (!ownPreload.isEmpty())
        onBus.environment.insert(preload, onBus.environment.value(preload) + QLatin1Char(':') + ownPreload);
    return m_program.run(onBus);
}

ProgramHost::State BusSession::programState()
{
    return m_program.programState();
}

void BusSession::killProgram()
{
    m_program.killProgram();
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
    m_error = key + QLatin1String(" was last ") +
              QString::fromUtf8(QJsonDocument(seen).toJson(QJsonDocument::Compact));
    return false;
}
