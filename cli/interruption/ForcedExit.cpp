#include "cli/interruption/ForcedExit.h"

#include "cli/output/ExitCode.h"
#include "cli/output/Output.h"

#include <chrono>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace {

constexpr int stepMs = 50;
constexpr int flushLimitMs = 100;

struct State
{
    std::mutex mutex;
    std::function<int()> finalStep = [] {
        return static_cast<int>(ExitCode::Interrupted);
    };
};

State &state()
{
    // Never destroyed: a thread may still use it while the process ends.
    static auto *state = new State;
    return *state;
}

void endLater(int limitMs)
{
    // Sleep in short steps, so that a pause of the machine counts as one step at most.
    for (int waitedMs = 0; waitedMs < limitMs; waitedMs += stepMs)
        std::this_thread::sleep_for(std::chrono::milliseconds(stepMs));
    // Never unlocked: a thread that sets another final step now is too late and has to wait.
    state().mutex.lock();
    const int exitCode = state().finalStep();
    Output::flush(flushLimitMs);
    std::_Exit(exitCode);
}

} // namespace

void ForcedExit::setFinalStep(std::function<int()> finalStep)
{
    const std::lock_guard<std::mutex> lock(state().mutex);
    state().finalStep = std::move(finalStep);
}

void ForcedExit::schedule(int limitMs)
{
    std::thread(endLater, limitMs).detach();
}
