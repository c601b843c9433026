#include "simulator/lifetime/EndOnRequest.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

namespace {

/// Returns a descriptor from which signals are read. The process then ends normally and runs its destructors.
int readableSignals()
{
    sigset_t set;
    sigemptyset(&set);
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&set, number);
    sigprocmask(SIG_BLOCK, &set, nullptr);
    return signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
}

} // namespace

struct EndOnRequest::Private
{
    ~Private() { close(descriptor); }

    const int descriptor = readableSignals();
    QSocketNotifier signalled{descriptor, QSocketNotifier::Read};
    QSocketNotifier input{STDIN_FILENO, QSocketNotifier::Read};
};

EndOnRequest::EndOnRequest() : d(std::make_unique<Private>())
{
    QObject::connect(&d->signalled, &QSocketNotifier::activated, [] { QCoreApplication::quit(); });
    QObject::connect(&d->input, &QSocketNotifier::activated, [this] {
        char dropped[4096];
        if (read(STDIN_FILENO, dropped, sizeof dropped) > 0)
            return;
        d->input.setEnabled(false);
        QCoreApplication::quit();
    });
}

EndOnRequest::~EndOnRequest() = default;
