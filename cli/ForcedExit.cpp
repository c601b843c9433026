#include "cli/LastResort.h"

#include "cli/ExitCode.h"
#include "cli/Output.h"

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
    std::function<int()> lastWords = [] {
        return static_cast<int>(ExitCode::Interrupted);
    };
};

State &state()
{
    // Never destroyed: a thread may come back to it while the process ends.
    static auto *state = new State;
    return *state;
}

void endLater(int limitMs)
{
    // In short steps, so that a pause of the machine counts for no more than one of them.
    for (int waitedMs = 0; waitedMs < limitMs; waitedMs += stepMs)
        std::this_thread::sleep_for(std::chrono::milliseconds(stepMs));
    // Never released: who would set other last words comes too late.
    state().mutex.lock();
    const int exitCode = state().lastWords();
    Output::flush(flushLimitMs);
    std::_Exit(exitCode);
}

} // namespace

void LastResort::setLastWords(std::function<int()> lastWords)
{
    const std::lock_guard<std::mutex> lock(state().mutex);
    state().lastWords = std::move(lastWords);
}

void LastResort::begin(int limitMs)
{
    std::thread(endLater, limitMs).detach();
}
