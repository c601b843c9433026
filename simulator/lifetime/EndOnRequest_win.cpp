#include "simulator/lifetime/EndOnRequest.h"

#include <QCoreApplication>

#include <cstdio>
#include <thread>

struct EndOnRequest::Private
{
};

EndOnRequest::EndOnRequest() : d(std::make_unique<Private>())
{
    // Windows cannot notify an event loop of the end of a pipe, so a thread waits for it; it ends with the
    // process. There are no signals: a console program that is told to terminate ends at once.
    std::thread([] {
        char dropped[256];
        while (std::fread(dropped, 1, sizeof dropped, stdin) > 0) {
        }
        QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit,
                                  Qt::QueuedConnection);
    }).detach();
}

EndOnRequest::~EndOnRequest() = default;
