#include "harness/process/BoundProcess.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

BoundProcess::BoundProcess() = default;

// Runs between fork and exec: only async-signal-safe functions are allowed.
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
