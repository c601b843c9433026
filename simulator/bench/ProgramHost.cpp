#include "simulator/bench/ProgramHost.h"

#include "simulator/bench/Polling.h"

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
