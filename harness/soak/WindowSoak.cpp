#include "harness/UpdateScenario.h"
#include "harness/soak/SoakStage.h"

namespace {

const QString startButton = QStringLiteral("startButton");
const QString connection = QStringLiteral("statusLabel");

class WindowSoak : public SoakRun
{
public:
    explicit WindowSoak(const SoakPlan &plan) : m_stage(plan), m_scenario(plan.models().first()) {}

    QString start(int lapse) override
    {
        m_stage.prepare(m_scenario, lapse);
        return m_scenario.start() ? QString() : m_scenario.errorText();
    }

    QString update(const SoakPlan::Turn &turn) override
    {
        UpdateScenario &s = m_scenario;
        const int burns = s.bus.device(turn.model).value(QLatin1String("burns")).toInt();
        if (!m_stage.setFlasher(s.program, turn) || !s.bus.plug(turn.model))
            return QStringLiteral("cannot plug it: ") + s.bus.errorText();
        if (!s.probe.waitForText(QStringLiteral("deviceModelLabel"), turn.model, SoakStage::limitMs) ||
            !s.probe.waitForWholeText(connection, QStringLiteral("Device Detected"), SoakStage::limitMs) ||
            !s.probe.waitForEnabled(startButton, true, SoakStage::limitMs) || !s.probe.click(startButton) ||
            !s.probe.waitForEnabled(startButton, false, SoakStage::limitMs) ||
            !s.probe.waitForEnabled(startButton, true, SoakStage::limitMs))
            return s.probe.errorText();
        const SoakFault *fault = m_stage.faultOf(turn);
        const QString expected = QLatin1String(fault ? fault->title : "CurrentStatus: Upgrade Successful");
        // A failed fetch gives the button back before its title.
        s.probe.waitForWholeText(QStringLiteral("stateTitleLabel"), expected, 2000);
        const QString title = s.probe.text(QStringLiteral("stateTitleLabel"));
        QString problem = title == expected ? QString() : QStringLiteral("the title is ") + title;
        if (problem.isEmpty())
            problem = m_stage.checkDevice(s.bus, turn, burns);
        s.bus.unplug(turn.model);
        if (!s.probe.waitForWholeText(connection, QStringLiteral("Device not detected"), SoakStage::limitMs))
            return s.probe.errorText();
        return problem;
    }

    Use use() override
    {
        UpdateScenario &s = m_scenario;
        Use use = Use::of(s.bus.programId(), s.program.temporaryFolder());
        use.lines = s.probe.text(QStringLiteral("logTextView")).count(QLatin1Char('\n'));
        return use;
    }

    QString end() override
    {
        return m_scenario.closeWindow() == 0 ? QString() : QStringLiteral("the window did not close with 0");
    }

private:
    SoakStage m_stage;
    UpdateScenario m_scenario;
};

} // namespace

std::unique_ptr<SoakRun> makeWindowSoak(const SoakPlan &plan)
{
    return std::make_unique<WindowSoak>(plan);
}
