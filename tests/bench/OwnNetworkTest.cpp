#include "tests/bench/RunningSubject.h"

#include <gtest/gtest.h>

#include <array>

namespace {

constexpr int limitMs = 20000;

std::unique_ptr<QProcess> launched(const QStringList &command)
{
    auto process = std::make_unique<QProcess>();
    process->start(QStringLiteral(IN_OWN_NETWORK), command);
    return process;
}

QStringList holdTheFixedPort()
{
    return {QStringLiteral(BENCH_DOUBLE), QStringLiteral("hold"), QStringLiteral("18099"),
            QStringLiteral("300")};
}

void expectThatTwoAtOnceBothGetThePort()
{
    const std::array<std::unique_ptr<QProcess>, 2> both{launched(holdTheFixedPort()),
                                                        launched(holdTheFixedPort())};
    for (const auto &process : both) {
        ASSERT_TRUE(process->waitForFinished(limitMs));
        EXPECT_EQ(process->exitCode(), 0) << process->readAllStandardError().constData();
    }
}

TEST(InOwnNetwork, TwoAtOnceBindTheSamePort)
{
    expectThatTwoAtOnceBothGetThePort();
}

TEST(InOwnNetwork, WhereNoNamespaceIsPermittedTheyTakeTurns)
{
    qputenv("QUILLMARSH_BENCH_NO_NAMESPACE", "1");
    expectThatTwoAtOnceBothGetThePort();
    qunsetenv("QUILLMARSH_BENCH_NO_NAMESPACE");
}

TEST(InOwnNetwork, ItExitsWithTheCommandsExitCodeAndKeepsArgumentsWhole)
{
    const auto process = launched({QStringLiteral("sh"), QStringLiteral("-c"),
                                   QStringLiteral("[ \"$1\" = 'two  words' ] && exit 42"),
                                   QStringLiteral("sh"), QStringLiteral("two  words")});
    ASSERT_TRUE(process->waitForFinished(limitMs));
    EXPECT_EQ(process->exitCode(), 42);
}

} // namespace
