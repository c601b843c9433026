#include "simulator/bench/ChildLifetime.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

void ChildLifetime::bindToParent()
{
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
}

void ChildLifetime::killGroup(qint64 processId)
{
    if (processId > 1)
        ::kill(static_cast<pid_t>(-processId), SIGKILL);
}
