#include "harness/process/PlainHost.h"

#include "harness/process/Polling.h"

PlainHost::PlainHost() = default;

PlainHost::~PlainHost()
{
    killProgram();
}

bool PlainHost::run(const Launch &launch)
{
    killProgram();
    m_process = std::make_unique<BoundProcess>();
    m_process->setProcessEnvironment(launch.environment);
    m_process->setWorkingDirectory(launch.workingDirectory);
    m_process->setStandardOutputFile(launch.stdoutFile);
    m_process->setStandardErrorFile(launch.stderrFile);
    if (m_process->startAndWait(launch.program, launch.arguments, eventLimitMs))
        return true;
    m_error = launch.program + QStringLiteral(": ") + m_process->errorString();
    m_process.reset();
    return false;
}

ProgramHost::State PlainHost::programState()
{
    if (!m_process)
        return {};
    State state;
    state.running = m_process->isRunning();
    state.signalled = !state.running && m_process->exitStatus() == QProcess::CrashExit;
    if (!state.running && !state.signalled)
        state.exitCode = m_process->exitCode();
    return state;
}

void PlainHost::killProgram()
{
    if (!m_process || m_process->state() == QProcess::NotRunning)
        return;
    // Kills the process group while its leader exists: afterwards the id could belong to another process.
    m_process->killAll();
    m_process->kill();
    waitForEnd(*m_process, eventLimitMs);
}
