#include "cli/interruption/SystemSignals.h"

#include <csignal>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace {

int pipeEnds[2] = {-1, -1};

/// Only wakes the thread that reads the pipe: a signal handler may do little else.
void noteSignal(int /*number*/)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = write(pipeEnds[1], &byte, 1);
}

} // namespace

void SystemSignals::watchSystem()
{
    if (pipe2(pipeEnds, O_CLOEXEC) != 0)
        return;
    fcntl(pipeEnds[1], F_SETFL, O_NONBLOCK);
    std::thread([] {
        char byte = 0;
        while (read(pipeEnds[0], &byte, 1) == 1)
            notify();
    }).detach();
    struct sigaction action = {};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        sigaction(number, &action, nullptr);
}
