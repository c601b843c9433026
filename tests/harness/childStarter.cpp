// Starts a child as the test harness does, prints its id, and waits to be killed.
#include "harness/process/ChildProcess.h"

#include <QCoreApplication>
#include <QThread>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    ChildProcess child;
    child.start({QStringLiteral("sleep"), QStringLiteral("60")});
    std::printf("%lld\n", child.processId());
    std::fflush(stdout);
    QThread::sleep(60);
    return 0;
}
