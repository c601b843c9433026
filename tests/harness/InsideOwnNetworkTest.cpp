// Like the end-to-end tests, these tests are started by in-own-network.sh.
#include "harness/session/XvfbSession.h"
#include "simulator/server/FirmwareAddress.h"
#include "tests/harness/RunningSubject.h"

#include <QTcpServer>
#include <QThread>

#include <gtest/gtest.h>

namespace {

/// Holds the port for a while. Two tests do so, and each gets it even if they run at the same time.
void holdTheFixedPort()
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost, FirmwareAddress::port()))
        << qPrintable(server.errorString());
    QThread::msleep(300);
}

TEST(InsideOwnNetworkTest, TheFixedPortIsFreeForOne)
{
    holdTheFixedPort();
}

TEST(InsideOwnNetworkTest, TheFixedPortIsFreeForAnother)
{
    holdTheFixedPort();
}

TEST(InsideOwnNetworkTest, AProgramOnADisplayStartedInsideIsSeenAndOperated)
{
    XvfbSession screen;
    ASSERT_TRUE(screen.start()) << qPrintable(screen.errorText());
    RunningSubject subject;
    subject.stage.setDisplay(screen.display());
    ASSERT_TRUE(subject.start()) << qPrintable(subject.errorText());
    ASSERT_TRUE(subject.probe.check(QStringLiteral("tickBox")));
    EXPECT_TRUE(subject.probe.waitForText(QStringLiteral("statusLabel"), QStringLiteral("tick 2")))
        << qPrintable(subject.probe.errorText());
}

} // namespace
