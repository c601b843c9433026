#include "simulator/bench/PlainHost.h"

#include "simulator/bench/ChildLifetime.h"

namespace {

constexpr int limitMs = 10000;

class BoundProcess : public QProcess
{
protected:
    void setupChildProcess() override { ChildLifetime::bindToParent(); }
};

} // namespace

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
    m_process->start(launch.program, launch.arguments);
    if (!m_process->waitForStarted(limitMs)) {
        m_error = launch.program + QStringLiteral(": ") + m_process->errorString();
        m_process.reset();
        return false;
    }
    m_processId = m_process->processId();
    return true;
}

ProgramHost::State PlainHost::programState()
{
    if (!m_process)
        return {};
    if (m_process->state() != QProcess::NotRunning)
        m_process->waitForFinished(0); // Notices an end without an event loop.
    State state;
    state.running = m_process->state() != QProcess::NotRunning;
    state.signalled = !state.running && m_process->exitStatus() == QProcess::CrashExit;
    if (!state.running && !state.signalled)
        state.exitCode = m_process->exitCode();
    return state;
}

void PlainHost::killProgram()
{
    if (!m_process || m_process->state() == QProcess::NotRunning)
        return;
    // The group goes first: once its leader is gone, its number could be another's.
    ChildLifetime::killGroup(m_processId);
    m_process->kill();
    m_process->waitForFinished(limitMs);
}

qint64 PlainHost::processId() const
{
    return m_processId;
}
