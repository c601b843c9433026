#include "harness/process/ProgramHost.h"

#include "harness/process/Polling.h"

std::optional<int> ProgramHost::waitForExit(int limitMs)
{
    State state;
    pollUntil(
        [&] {
            state = programState();
            return !state.running;
        },
        limitMs);
    return state.running ? std::nullopt : state.exitCode;
}
