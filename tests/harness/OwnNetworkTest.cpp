#include "harness/BuildPaths.h"
#include "harness/process/Polling.h"
#include "tests/harness/RunningSubject.h"

#include <gtest/gtest.h>

#include <array>

namespace {

std::unique_ptr<QProcess> launched(const QStringList &command)
{
    auto process = std::make_unique<QProcess>();
    process->start(QStringLiteral(IN_OWN_NETWORK), command);
    return process;
}

/// Returns the command of a server on the port of the program's firmware server. It ends with its input and
/// fails if the port is in use.
QStringList holdTheFixedPort()
{
    return {QStringLiteral("sh"), QStringLiteral("-c"), QStringLiteral("sleep 0.3 | \"$0\""),
            BuildPaths::firmwareServer()};
}

void expectThatTwoAtOnceBothGetThePort()
{
    const std::array<std::unique_ptr<QProcess>, 2> both{launched(holdTheFixedPort()),
                                                        launched(holdTheFixedPort())};
    for (const auto &process : both) {
        ASSERT_TRUE(waitForEnd(*process));
        EXPECT_EQ(process->exitCode(), 0) << process->readAllStandardError().constData();
    }
}

bool namespaceIsPermitted(const QStringList &options)
{
    const QStringList command{QStringLiteral("--net"), QStringLiteral("--mount"), QStringLiteral("ip"),
                              QStringLiteral("link"),  QStringLiteral("set"),     QStringLiteral("lo"),
                              QStringLiteral("up")};
    QProcess process;
    process.start(QStringLiteral("unshare"), options + command);
    return waitForEnd(process) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

TEST(OwnNetworkTest, IfNamespacesAreAllowedTheCommandHasItsOwn)
{
    const bool permitted =
        namespaceIsPermitted({}) ||
        namespaceIsPermitted({QStringLiteral("--user"), QStringLiteral("--map-root-user")});
    const auto process = launched({QStringLiteral("readlink"), QStringLiteral("/proc/self/ns/net")});
    ASSERT_TRUE(waitForEnd(*process));
    const QByteArray theirs = process->readAllStandardOutput().trimmed();
    QProcess ours;
    ours.start(QStringLiteral("readlink"), {QStringLiteral("/proc/self/ns/net")});
    ASSERT_TRUE(waitForEnd(ours));
    ASSERT_TRUE(theirs.startsWith("net:")) << theirs.constData();
    EXPECT_EQ(theirs != ours.readAllStandardOutput().trimmed(), permitted);
}

TEST(OwnNetworkTest, TwoAtOnceBindTheSamePort)
{
    expectThatTwoAtOnceBothGetThePort();
}

TEST(OwnNetworkTest, IfNamespacesAreNotAllowedTheCommandsTakeTurns)
{
    qputenv("QUILLMARSH_NO_NAMESPACE", "1");
    expectThatTwoAtOnceBothGetThePort();
    qunsetenv("QUILLMARSH_NO_NAMESPACE");
}

TEST(OwnNetworkTest, ItExitsWithTheCommandsExitCodeAndPassesArgumentsUnchanged)
{
    const auto process = launched({QStringLiteral("sh"), QStringLiteral("-c"),
                                   QStringLiteral("[ \"$1\" = 'two  words' ] && exit 42"),
                                   QStringLiteral("sh"), QStringLiteral("two  words")});
    ASSERT_TRUE(waitForEnd(*process));
    EXPECT_EQ(process->exitCode(), 42);
}

} // namespace
