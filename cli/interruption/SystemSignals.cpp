#include "cli/interruption/SystemSignals.h"

#include <mutex>

namespace {

struct Receiver
{
    std::mutex mutex;
    std::function<void()> requested;
};

Receiver &receiver()
{
    // Never destroyed: a request may come while the process ends.
    static auto *receiver = new Receiver;
    return *receiver;
}

} // namespace

SystemSignals::SystemSignals(std::function<void()> requested)
{
    {
        const std::lock_guard<std::mutex> lock(receiver().mutex);
        receiver().requested = std::move(requested);
    }
    static std::once_flag once;
    std::call_once(once, &SystemSignals::watchSystem);
}

SystemSignals::~SystemSignals()
{
    const std::lock_guard<std::mutex> lock(receiver().mutex);
    receiver().requested = {};
}

void SystemSignals::notify()
{
    const std::lock_guard<std::mutex> lock(receiver().mutex);
    if (receiver().requested)
        receiver().requested();
}
