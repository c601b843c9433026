#pragma once

#include "harness/process/Polling.h"
#include "harness/session/BusSession.h"
#include "harness/soak/SoakRun.h"
#include "harness/stage/StagedProgram.h"

/// What both soak runs do alike around a scenario's program, bus and firmware.
class SoakStage
{
public:
    static constexpr int limitMs = 120000;

    explicit SoakStage(const SoakPlan &plan) : m_faults(soakFaults()), m_plan(plan) {}

    template <typename Scenario>
    void prepare(Scenario &scenario, int lapse)
    {
        m_sums = m_plan.addImages(scenario.firmware);
        scenario.devices = m_plan.devices();
        scenario.serverFaults = m_plan.serverFaults(scenario.firmware);
        scenario.program.setControlList(m_plan.models(), {QStringLiteral("USB")});
        scenario.program.setVariable(QStringLiteral("LD_PRELOAD"),
                                     QStringLiteral(QUILLMARSH_TIME_LAPSE_LIBRARY));
        scenario.program.setVariable(QStringLiteral("QUILLMARSH_TIME_LAPSE"), QString::number(lapse));
    }

    const SoakFault *faultOf(const SoakPlan::Turn &turn) const
    {
        return turn.fault ? &m_faults.at(*turn.fault) : nullptr;
    }

    /// Has the flasher do what the turn asks for.
    bool setFlasher(StagedProgram &program, const SoakPlan::Turn &turn) const
    {
        const QString script = program.applicationFolder() + QStringLiteral("/upgcmd.exe.script.json");
        // A script counts its runs in the tool's record, which would grow for ever as well.
        QFile::remove(program.applicationFolder() + QStringLiteral("/upgcmd.exe.runs.jsonl"));
        const SoakFault *fault = faultOf(turn);
        if (fault && !fault->flasher.isEmpty())
            return program.setScript(QStringLiteral("upgcmd.exe"),
                                     StandinScript::scriptFor(QStringLiteral("image"), fault->flasher));
        return !QFile::exists(script) || QFile::remove(script);
    }

    /// Compares what the device has received with what it should have.
    QString checkDevice(BusSession &bus, const SoakPlan::Turn &turn, int burnsBefore) const
    {
        const SoakFault *fault = faultOf(turn);
        const QJsonObject device = bus.device(turn.model);
        const int burns = device.value(QLatin1String("burns")).toInt() - burnsBefore;
        const bool shouldBurn = !fault || fault->isBurned;
        if (burns != (shouldBurn ? 1 : 0))
            return QStringLiteral("%1 burns").arg(burns);
        const QString sum = device.value(QLatin1String("receivedMd5")).toString();
        if (shouldBurn && sum != QString::fromLatin1(m_sums.value(turn.model)))
            return QStringLiteral("it received other bytes");
        return {};
    }

private:
    QVector<SoakFault> m_faults;
    SoakPlan m_plan;
    QHash<QString, QByteArray> m_sums;
};
