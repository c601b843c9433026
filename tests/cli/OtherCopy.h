#pragma once

#include "harness/process/PlainHost.h"
#include "tests/cli/CliTest.h"

/// Another copy of one of the two programs, beside the one of a scenario: on the same bus, for the same user.
class OtherCopy
{
public:
    /// `executable` is the window program or quillmarsh-cli.
    OtherCopy(CliScenario &scenario, const QString &executable) : program(executable), m_scenario(scenario)
    {
        program.addAllTools(program.system().standIn());
        program.setControlList({scenario.model()}, {QStringLiteral("USB")});
        scenario.program.shareUserOf(program);
    }

    /// Starts it. The scenario's bus has to run.
    bool start(const QStringList &arguments)
    {
        Launch launch = program.launch(arguments);
        const QJsonObject &bus = m_scenario.bus.environment();
        for (auto variable = bus.begin(); variable != bus.end(); ++variable)
            launch.environment.insert(variable.key(), variable.value().toString());
        return m_host.run(launch);
    }
    /// Starts it with a flasher that hangs. Returns whether it writes.
    bool startAndWrite(const QStringList &arguments)
    {
        program.setScript(CliCases::usbFlasher, CliCases::script({{CliCases::step("hang")}}));
        return start(arguments) && pollUntil([&] { return program.runs(CliCases::usbFlasher).size() == 1; });
    }
    void kill() { m_host.killProgram(); }

    StagedProgram program;

private:
    CliScenario &m_scenario;
    PlainHost m_host;
};
