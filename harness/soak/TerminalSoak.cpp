#include "harness/CliScenario.h"
#include "harness/soak/SoakStage.h"

#include <QJsonDocument>
#include <QThread>

#include <csignal>

namespace {

class TerminalSoak : public SoakRun
{
public:
    explicit TerminalSoak(const SoakPlan &plan) : m_stage(plan), m_scenario(plan.models().first()) {}

    QString start(int lapse) override
    {
        m_lapse = lapse;
        m_stage.prepare(m_scenario, lapse);
        if (!m_scenario.start({QStringLiteral("update"), QStringLiteral("--repeat"), QStringLiteral("--yes"),
                               QStringLiteral("--json")}))
            return m_scenario.errorText();
        m_output.setFileName(m_scenario.program.launch().stdoutFile);
        return m_output.open(QIODevice::ReadOnly) ? QString() : m_output.errorString();
    }

    QString update(const SoakPlan::Turn &turn) override
    {
        CliScenario &s = m_scenario;
        const int burns = s.bus.device(turn.model).value(QLatin1String("burns")).toInt();
        if (!m_stage.setFlasher(s.program, turn) || !s.bus.plug(turn.model))
            return QStringLiteral("cannot plug it: ") + s.bus.errorText();
        const QJsonObject result = nextResult();
        const SoakFault *fault = m_stage.faultOf(turn);
        const bool succeeds = !fault || fault->isBurned;
        const QString outcome = result.value(QLatin1String("outcome")).toString();
        QString problem;
        if (outcome != QLatin1String(succeeds ? "succeeded" : "failed") ||
            result.value(QLatin1String("model")).toString() != turn.model)
            problem = QString::fromUtf8(QJsonDocument(result).toJson(QJsonDocument::Compact));
        if (problem.isEmpty())
            problem = m_stage.checkDevice(s.bus, turn, burns);
        // As a person does: the device has restarted before it is taken off, and the next one comes after a
        // moment. The program looks twice a second whether it is there.
        if (succeeds && !s.bus.waitForDevice(turn.model, QStringLiteral("application"), SoakStage::limitMs))
            return s.bus.errorText();
        pauseMs(4000);
        s.bus.unplug(turn.model);
        pauseMs(4000);
        return problem;
    }

    Use use() override { return Use::of(m_scenario.bus.programId(), m_scenario.program.temporaryFolder()); }

    QString end() override
    {
        kill(static_cast<pid_t>(m_scenario.bus.programId()), SIGINT);
        return m_scenario.bus.waitForExit(SoakStage::limitMs) ? QString() : QStringLiteral("it did not end");
    }

private:
    /// The next "result" that the program writes; empty when none comes.
    QJsonObject nextResult()
    {
        QJsonObject result;
        pollUntil(
            [&] {
                while (result.isEmpty()) {
                    const qint64 at = m_output.pos();
                    const QByteArray line = m_output.readLine();
                    if (!line.endsWith('\n')) {
                        m_output.seek(at);
                        return false;
                    }
                    const QJsonObject event = QJsonDocument::fromJson(line).object();
                    if (event.value(QLatin1String("event")).toString() == QLatin1String("result"))
                        result = event;
                }
                return true;
            },
            SoakStage::limitMs, 20);
        return result;
    }

    /// Waits so long by the program's clock.
    void pauseMs(int milliseconds) const
    {
        QThread::msleep(static_cast<unsigned long>(milliseconds / m_lapse));
    }

    SoakStage m_stage;
    CliScenario m_scenario;
    QFile m_output;
    int m_lapse = 1;
};

} // namespace

std::unique_ptr<SoakRun> makeTerminalSoak(const SoakPlan &plan)
{
    return std::make_unique<TerminalSoak>(plan);
}
