#pragma once

#include "simulator/time/RunningTime.h"
#include "support/process/ShutdownFlag.h"

#include <QEventLoop>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>

/// Runs `work` on a separate thread, like the workflow, while the calling thread processes its events.
/// Returns the result. The test fails if this takes longer than `limitMs` of running time.
template <typename F>
auto onWorkerThread(F work, int limitMs = eventLimitMs)
{
    decltype(work()) result{};
    const std::unique_ptr<QThread> worker(QThread::create([&] { result = work(); }));
    QEventLoop loop;
    QObject::connect(worker.get(), &QThread::finished, &loop, &QEventLoop::quit);
    const RunningTimer waited;
    QTimer limit;
    QObject::connect(&limit, &QTimer::timeout, &loop, [&] {
        if (!waited.hasExpired(limitMs))
            return;
        limit.stop();
        ADD_FAILURE() << "the worker is still running";
        ShutdownFlag::instance().raise(); // ends all its waits
    });
    limit.start(100);
    worker->start();
    loop.exec();
    worker->wait();
    return result;
}
