// Preloaded into a program under test: its steady clock runs QUILLMARSH_TIME_LAPSE times as fast, and what it
// waits for by that clock takes as much less. The time of day stays. Nothing of Qt in here.

#include <dlfcn.h>
#include <poll.h>
#include <pthread.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>

namespace {

constexpr std::int64_t second = 1000000000;

template <typename Function>
Function next(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

std::int64_t factor()
{
    static const std::int64_t value = [] {
        const char *text = std::getenv("QUILLMARSH_TIME_LAPSE");
        const long number = text ? std::strtol(text, nullptr, 10) : 1;
        return static_cast<std::int64_t>(number < 1 ? 1 : number);
    }();
    return value;
}

std::int64_t toNumber(const timespec &time)
{
    return static_cast<std::int64_t>(time.tv_sec) * second + time.tv_nsec;
}

timespec toTime(std::int64_t nanoseconds)
{
    return {static_cast<time_t>(nanoseconds / second), static_cast<long>(nanoseconds % second)};
}

bool isSteady(clockid_t clock)
{
    return clock == CLOCK_MONOTONIC || clock == CLOCK_MONOTONIC_COARSE || clock == CLOCK_MONOTONIC_RAW ||
           clock == CLOCK_BOOTTIME;
}

using GetTime = int (*)(clockid_t, timespec *);
int realTime(clockid_t clock, timespec *time)
{
    static const auto real = next<GetTime>("clock_gettime");
    return real(clock, time);
}

/// Rounded up, so that nobody is woken before the time.
std::int64_t shortened(std::int64_t nanoseconds)
{
    return (nanoseconds + factor() - 1) / factor();
}

int shortenedMs(int milliseconds)
{
    return milliseconds <= 0 ? milliseconds : static_cast<int>(shortened(milliseconds));
}

/// The real moment of a moment of the fast clock.
timespec realMoment(const timespec &moment)
{
    return toTime(shortened(toNumber(moment)));
}

} // namespace

extern "C" {

int clock_gettime(clockid_t clock, timespec *time)
{
    const int result = realTime(clock, time);
    if (result == 0 && isSteady(clock))
        *time = toTime(toNumber(*time) * factor());
    return result;
}

int nanosleep(const timespec *wanted, timespec *left)
{
    static const auto real = next<int (*)(const timespec *, timespec *)>("nanosleep");
    const timespec shorter = toTime(shortened(toNumber(*wanted)));
    const int result = real(&shorter, left);
    if (result != 0 && left)
        *left = toTime(toNumber(*left) * factor());
    return result;
}

int clock_nanosleep(clockid_t clock, int flags, const timespec *wanted, timespec *left)
{
    static const auto real = next<int (*)(clockid_t, int, const timespec *, timespec *)>("clock_nanosleep");
    if (!isSteady(clock) && flags == TIMER_ABSTIME)
        return real(clock, flags, wanted, left);
    const timespec shorter = toTime(shortened(toNumber(*wanted)));
    const int result = real(clock, flags, &shorter, left);
    if (result != 0 && left && flags != TIMER_ABSTIME)
        *left = toTime(toNumber(*left) * factor());
    return result;
}

int usleep(useconds_t microseconds)
{
    const timespec wanted = toTime(std::int64_t{1000} * microseconds);
    return nanosleep(&wanted, nullptr);
}

int poll(pollfd *files, nfds_t count, int milliseconds)
{
    static const auto real = next<int (*)(pollfd *, nfds_t, int)>("poll");
    return real(files, count, shortenedMs(milliseconds));
}

int __poll_chk(pollfd *files, nfds_t count, int milliseconds, size_t)
{
    return poll(files, count, milliseconds);
}

int ppoll(pollfd *files, nfds_t count, const timespec *limit, const sigset_t *mask)
{
    static const auto real = next<int (*)(pollfd *, nfds_t, const timespec *, const sigset_t *)>("ppoll");
    const timespec shorter = limit ? toTime(shortened(toNumber(*limit))) : timespec{};
    return real(files, count, limit ? &shorter : nullptr, mask);
}

int __ppoll_chk(pollfd *files, nfds_t count, const timespec *limit, const sigset_t *mask, size_t)
{
    return ppoll(files, count, limit, mask);
}

int pthread_cond_timedwait(pthread_cond_t *condition, pthread_mutex_t *mutex, const timespec *until)
{
    static const auto real =
        next<int (*)(pthread_cond_t *, pthread_mutex_t *, const timespec *)>("pthread_cond_timedwait");
    timespec today{};
    realTime(CLOCK_REALTIME, &today);
    timespec steady{};
    clock_gettime(CLOCK_MONOTONIC, &steady);
    // Which clock the condition has cannot be asked; the moment is near the present of one of them.
    const std::int64_t moment = toNumber(*until);
    const bool isToday = std::llabs(moment - toNumber(today)) < std::llabs(moment - toNumber(steady));
    const timespec shorter =
        isToday ? toTime(toNumber(today) + shortened(moment - toNumber(today))) : realMoment(*until);
    return real(condition, mutex, &shorter);
}

int pthread_cond_clockwait(pthread_cond_t *condition, pthread_mutex_t *mutex, clockid_t clock,
                           const timespec *until)
{
    static const auto real = next<int (*)(pthread_cond_t *, pthread_mutex_t *, clockid_t, const timespec *)>(
        "pthread_cond_clockwait");
    const timespec shorter = isSteady(clock) ? realMoment(*until) : *until;
    return real(condition, mutex, clock, &shorter);
}

} // extern "C"
