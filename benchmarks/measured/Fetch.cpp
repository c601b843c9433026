#include "support/log/QuietReporter.h"

#include "download/ThreadFileDownloader.h"
#include "support/log/Diagnostics.h"

#include <QCoreApplication>
#include <QFutureWatcher>
#include <QtConcurrent>

/// Fetches the address in argument 1 to the file in argument 2 like an update: in ten segments, on a pool
/// thread.
int main(int argc, char *argv[])
{
    Diagnostics::install();
    const QCoreApplication application(argc, argv);
    QuietReporter reporter;
    ThreadFileDownloader worker;
    worker.url = QCoreApplication::arguments().value(1);
    worker.savePath = QCoreApplication::arguments().value(2);
    QFutureWatcher<bool> watcher;
    QObject::connect(&watcher, &QFutureWatcher<bool>::finished, &application, &QCoreApplication::quit);
    watcher.setFuture(QtConcurrent::run([&] { return worker.downloadInSegments(10, &reporter); }));
    QCoreApplication::exec();
    return watcher.result() ? 0 : 1;
}
