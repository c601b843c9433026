#include "tests/common/AnotherAttempt.h"

#include "simulator/time/RunningTime.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include <iostream>
#include <thread>

namespace {

/// The environment variable with the number of an attempt after the first.
const char *const attemptVariable = "QUILLMARSH_ATTEMPT";
/// A pause may occur in the second attempt, too. If there is one in all three, it is not occasional.
constexpr int mostAttempts = 3;

/// Records the failed tests and which of them may run again.
class Failures : public testing::EmptyTestEventListener
{
public:
    void OnTestStart(const testing::TestInfo &) override
    {
        m_limit = nullptr;
        m_sinceStart.restart();
    }
    void OnTestEnd(const testing::TestInfo &test) override
    {
        if (!test.result()->Failed())
            return;
        const qint64 pausedMs = m_sinceStart.pausedMs();
        if (!m_limit || pausedMs == 0) {
            m_final = true;
            return;
        }
        const std::string name = std::string(test.test_suite_name()) + '.' + test.name();
        std::cout << "[ PAUSED   ] The machine was paused for " << pausedMs << " ms during " << name
                  << ", which depends on " << m_limit << "." << std::endl;
        m_excused.append(QString::fromStdString(name));
    }

    void dependsOn(const char *limit) { m_limit = limit; }
    /// Returns the names of the failed tests, if all of them may run again.
    QStringList toRunAgain() const { return m_final ? QStringList() : m_excused; }

private:
    const char *m_limit = nullptr;
    RunningTimer m_sinceStart;
    QStringList m_excused;
    bool m_final = false;
};

Failures *failures = nullptr;

} // namespace

void dependsOnRealTime(const char *limit)
{
    if (failures)
        failures->dependsOn(limit);
}

int runTests()
{
    // Stored before the tests, which may change both.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString folder = QDir::currentPath();
    const int attempt = qMax(1, qEnvironmentVariableIntValue(attemptVariable));

    // Lets the first thread of the process end alone. Wine crashes in about one of a hundred processes in
    // which the first two end at the same moment, such as a thread and the one with which Qt watches it.
    std::thread([] {}).join();

    failures = new Failures;
    testing::UnitTest::GetInstance()->listeners().Append(failures); // takes ownership
    const int result = RUN_ALL_TESTS();
    const QStringList names = failures->toRunAgain();
    if (result == 0 || names.isEmpty() || attempt >= mostAttempts)
        return result;

    std::cout << "[ PAUSED   ] Once more: " << names.join(QLatin1String(", ")).toStdString() << std::endl;
    environment.insert(QString::fromLatin1(attemptVariable), QString::number(attempt + 1));
    QProcess again;
    again.setProcessChannelMode(QProcess::ForwardedChannels);
    again.setProcessEnvironment(environment);
    again.setWorkingDirectory(folder);
    again.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--gtest_filter=") + names.join(QLatin1Char(':'))});
    if (!again.waitForFinished(-1) || again.exitStatus() != QProcess::NormalExit)
        return 1;
    return again.exitCode();
}
