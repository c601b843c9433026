#pragma once

#include "harness/process/PlainHost.h"
#include "tests/cli/CliTest.h"

/// A second program beside the one of a scenario, on the same bus and for the same user.
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

    /// Starts the program. The scenario's bus must be running.
    bool start(const QStringList &arguments)
    {
        Launch launch = program.launch(arguments);
        const QJsonObject &bus = m_scenario.bus.environment();
        for (auto variable = bus.begin(); variable != bus.end(); ++variable)
            launch.environment.insert(variable.key(), variable.value().toString());
        return m_host.run(launch);
    }
    /// Starts the program with a flasher that hangs. Returns whether the program has started the flasher.
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
