#include "support/BrokenPipes.h"

#include <csignal>

void ignoreBrokenPipes()
{
    // Child processes do not inherit this: QProcess gives them the default back.
    std::signal(SIGPIPE, SIG_IGN);
}
