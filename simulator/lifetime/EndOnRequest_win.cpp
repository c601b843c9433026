#include "simulator/lifetime/EndOnRequest.h"

#include <QCoreApplication>

#include <cstdio>
#include <thread>

struct EndOnRequest::Private
{
};

EndOnRequest::EndOnRequest() : d(std::make_unique<Private>())
{
    // There is nothing that could tell an event loop of a pipe's end, so a thread waits for it; it
    // goes with the process. A console program that is asked to terminate ends without being told.
    std::thread([] {
        char dropped[256];
        while (std::fread(dropped, 1, sizeof dropped, stdin) > 0) {
        }
        QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit,
                                  Qt::QueuedConnection);
    }).detach();
}

EndOnRequest::~EndOnRequest() = default;
