#include "support/process/BrokenPipes.h"

#include <csignal>

void ignoreBrokenPipes()
{
    // Child processes do not inherit this: QProcess restores the default for them.
    std::signal(SIGPIPE, SIG_IGN);
}
