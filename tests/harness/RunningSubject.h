#pragma once

#include "harness/process/PlainHost.h"
#include "harness/stage/StagedProgram.h"
#include "harness/window/ProbeClient.h"

/// The probe's test program, staged, started and connected to.
struct RunningSubject
{
    RunningSubject() : stage(QStringLiteral(PROBE_SUBJECT)) {}

    bool start(const QStringList &arguments = {})
    {
        return host.run(stage.launch(arguments)) && probe.connectThrough(stage.probePortFile()) &&
               probe.waitForVisible(QStringLiteral("subjectWindow"), true);
    }

    /// Returns a value that the program printed about itself when it started.
    QString reported(const QString &key) const
    {
        const QStringList lines = stage.standardOutput().split(QLatin1Char('\n'));
        for (const QString &line : lines) {
            if (line.startsWith(key + QLatin1Char(' ')))
                return line.mid(key.size() + 1);
        }
        return QStringLiteral("(not reported)");
    }

    QString errorText() const
    {
        return stage.errorText() + host.errorText() + QLatin1Char('\n') + probe.errorText() +
               QLatin1Char('\n') + stage.standardError();
    }

    StagedProgram stage;
    PlainHost host;
    ProbeClient probe;
};
