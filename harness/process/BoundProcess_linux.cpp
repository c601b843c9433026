#include "harness/process/BoundProcess.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

BoundProcess::BoundProcess() = default;

// Between fork and exec: only what is async-signal-safe.
void BoundProcess::setupChildProcess()
{
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
}

void BoundProcess::killAll()
{
    if (m_leaderId > 1)
        ::kill(static_cast<pid_t>(-m_leaderId), SIGKILL);
}
