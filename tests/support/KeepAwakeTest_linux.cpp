#include "support/power/KeepAwake.h"

#include "harness/process/Polling.h"
#include "session/AwakeWhileWriting.h"
#include "simulator/files/WholeFile.h"
#include "tests/common/EventWait.h"
#include "tests/support/FakeLoginManager_linux.h"

#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace {

const QString why = QStringLiteral("Firmware is being written to a device.");

/// The logged lines. May be used from any thread.
class Lines
{
public:
    KeepAwake::Log log()
    {
        return [this](const QString &line) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_lines.append(line);
        };
    }
    QStringList all() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_lines;
    }

private:
    mutable std::mutex m_mutex;
    QStringList m_lines;
};

/// Tests with a separate system bus. Its address is the same for all tests, because the D-Bus library reads
/// it only once.
class KeepAwakeTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        // Not in TMPDIR, because the path of a socket has at most 107 bytes.
        s_folder = new QTemporaryDir(QStringLiteral("/tmp/keep-awake-XXXXXX"));
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + QFile::encodeName(socketPath()));
    }
    static void TearDownTestSuite() { delete s_folder; }

    void TearDown() override
    {
        m_manager.reset();
        QDBusConnection::disconnectFromBus(m_name);
        m_daemon.kill();
        waitForEnd(m_daemon);
    }

    static QString socketPath() { return s_folder->filePath(QStringLiteral("bus")); }

    void startBus()
    {
        QFile::remove(socketPath());
        const QString configuration = s_folder->filePath(QStringLiteral("bus.conf"));
        ASSERT_TRUE(WholeFile::write(
            configuration, "<!DOCTYPE busconfig PUBLIC '-//freedesktop//DTD D-Bus Bus Configuration "
                           "1.0//EN' 'http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd'>\n"
                           "<busconfig><listen>unix:path=" +
                               QFile::encodeName(socketPath()) +
                               "</listen><policy context='default'><allow send_destination='*' "
                               "eavesdrop='true'/><allow eavesdrop='true'/><allow own='*'/></policy>"
                               "</busconfig>\n"));
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                        QStringLiteral("--nosyslog"), QStringLiteral("--print-address"),
                        QStringLiteral("--config-file=") + configuration});
        ASSERT_TRUE(waitForStart(m_daemon)) << m_daemon.errorString().toStdString();
        // The socket exists before the daemon listens on it, but the address is printed afterwards.
        ASSERT_TRUE(pollUntil([this] { return m_daemon.waitForReadyRead(10); }))
            << m_daemon.readAllStandardError().toStdString();
    }
    void startManager()
    {
        ASSERT_NO_FATAL_FAILURE(startBus());
        const QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SystemBus, m_name);
        ASSERT_TRUE(bus.isConnected()) << bus.lastError().message().toStdString();
        m_manager = std::make_unique<FakeLoginManager>(bus);
        ASSERT_TRUE(m_manager->start());
    }
    bool waitUntilAsked()
    {
        return processEventsUntil([this] { return !m_manager->questions().isEmpty(); });
    }
    bool waitUntilHeld(int count)
    {
        return processEventsUntil(
            [this, count] { return m_manager->held() == count && m_manager->isSettled(); });
    }
    std::unique_ptr<KeepAwake> keepAwake() { return std::make_unique<KeepAwake>(why, 0, m_lines.log()); }

    static inline QTemporaryDir *s_folder = nullptr;
    const QString m_name = QStringLiteral("test");
    QProcess m_daemon;
    std::unique_ptr<FakeLoginManager> m_manager;
    Lines m_lines;
};

TEST_F(KeepAwakeTest, SleepAndShutdownAreBlockedAsLongAsItLives)
{
    ASSERT_NO_FATAL_FAILURE(startManager());
    auto object = keepAwake();
    ASSERT_TRUE(waitUntilHeld(1));
    const QStringList question{QStringLiteral("sleep:shutdown"), QStringLiteral("Quillmarsh"), why,
                               QStringLiteral("block")};
    EXPECT_EQ(m_manager->questions(), QList<QStringList>{question});
    object.reset();
    EXPECT_TRUE(waitUntilHeld(0));
    EXPECT_EQ(m_manager->lent(), 1);
    EXPECT_TRUE(m_lines.all().isEmpty());
}

TEST_F(KeepAwakeTest, ItMayBeMadeOnOneThreadAndDestroyedOnAnother)
{
    ASSERT_NO_FATAL_FAILURE(startManager());
    std::unique_ptr<KeepAwake> object;
    std::thread([&] { object = keepAwake(); }).join();
    ASSERT_TRUE(waitUntilHeld(1));
    std::thread([&] { object.reset(); }).join();
    EXPECT_TRUE(waitUntilHeld(0));
}

TEST_F(KeepAwakeTest, TwoObjectsHoldSeparateLocks)
{
    ASSERT_NO_FATAL_FAILURE(startManager());
    auto first = keepAwake();
    auto second = keepAwake();
    ASSERT_TRUE(waitUntilHeld(2));
    first.reset();
    EXPECT_TRUE(waitUntilHeld(1));
    second.reset();
    EXPECT_TRUE(waitUntilHeld(0));
}

TEST_F(KeepAwakeTest, ALateAnswerHoldsNoLock)
{
    ASSERT_NO_FATAL_FAILURE(startManager());
    m_manager->isSlow = true;
    auto object = keepAwake();
    ASSERT_TRUE(waitUntilAsked());
    object.reset();
    m_manager->answer();
    EXPECT_EQ(m_manager->lent(), 1);
    EXPECT_TRUE(waitUntilHeld(0));
    EXPECT_TRUE(m_lines.all().isEmpty());
}

TEST_F(KeepAwakeTest, AKilledProgramHoldsNoLock)
{
    ASSERT_NO_FATAL_FAILURE(startManager());
    QProcess program;
    program.start(QStringLiteral(KEEP_AWAKE_HOLDER), QStringList());
    ASSERT_TRUE(waitForStart(program));
    ASSERT_TRUE(waitUntilHeld(1));
    program.kill();
    ASSERT_TRUE(waitForEnd(program));
    EXPECT_TRUE(waitUntilHeld(0));
}

TEST_F(KeepAwakeTest, AToolThatKeepsRunningDoesNotInheritTheLock)
{
    ASSERT_NO_FATAL_FAILURE(startManager());
    auto object = keepAwake();
    ASSERT_TRUE(waitUntilHeld(1));
    QProcess tool;
    tool.start(QStringLiteral("sleep"), {QStringLiteral("600")});
    ASSERT_TRUE(waitForStart(tool));
    object.reset();
    EXPECT_TRUE(waitUntilHeld(0));
    tool.kill();
    EXPECT_TRUE(waitForEnd(tool));
}

TEST_F(KeepAwakeTest, ARefusalIsLoggedOnceWithItsReason)
{
    ASSERT_NO_FATAL_FAILURE(startManager());
    m_manager->refuses = true;
    auto object = keepAwake();
    const QStringList line{QStringLiteral("The system may go to sleep during the update: Permission denied")};
    EXPECT_TRUE(processEventsUntil([&] { return m_lines.all() == line; }));
    object.reset();
    EXPECT_EQ(m_lines.all(), line);
    EXPECT_EQ(m_manager->lent(), 0);
}

TEST_F(KeepAwakeTest, AnUpdateHoldsItFromTheFirstFlasherToEveryEnding)
{
    ASSERT_NO_FATAL_FAILURE(startManager());
    int lent = 0;
    for (const UpdateStage ending : {UpdateStage::Idle, UpdateStage::Blocked, UpdateStage::ProgramClosed}) {
        for (const UpdateStage writing : {UpdateStage::Flashing, UpdateStage::Programming}) {
            AwakeWhileWriting update(why, 0, m_lines.log());
            for (const UpdateStage stage : {UpdateStage::Fetching, UpdateStage::AskingForModel,
                                            UpdateStage::EnteringBootloader, UpdateStage::AskingProgrammer})
                update.onStageChanged(stage);
            EXPECT_EQ(m_manager->questions().size(), lent);
            update.onStageChanged(writing);
            EXPECT_TRUE(waitUntilHeld(1));
            for (const UpdateStage stage :
                 {UpdateStage::EnteringBootloader, writing, UpdateStage::Resetting}) {
                update.onStageChanged(stage);
                EXPECT_EQ(m_manager->held(), 1);
            }
            update.onStageChanged(ending);
            EXPECT_TRUE(waitUntilHeld(0));
            EXPECT_EQ(m_manager->lent(), ++lent);
        }
    }
}

TEST_F(KeepAwakeTest, AMissingLoginManagerIsLogged)
{
    ASSERT_NO_FATAL_FAILURE(startBus());
    const auto object = keepAwake();
    EXPECT_TRUE(processEventsUntil([&] { return m_lines.all().size() == 1; }));
    EXPECT_TRUE(m_lines.all().value(0).contains(QStringLiteral("org.freedesktop.login1")))
        << m_lines.all().value(0).toStdString();
}

TEST_F(KeepAwakeTest, AMissingBusIsLogged)
{
    QFile::remove(socketPath());
    const auto object = keepAwake();
    EXPECT_TRUE(processEventsUntil([&] { return m_lines.all().size() == 1; }));
}

TEST_F(KeepAwakeTest, ABusThatNeverAnswersDoesNotBlock)
{
    QFile::remove(socketPath());
    QLocalServer silent;
    ASSERT_TRUE(silent.listen(socketPath()));
    auto object = keepAwake();
    // The request is made on another thread, which now waits for the bus.
    ASSERT_TRUE(processEventsUntil([&] { return silent.hasPendingConnections(); }));
    const RunningTimer timer;
    object.reset();
    // The D-Bus library would wait for half a minute.
    EXPECT_LT(timer.elapsed(), 10000);
    EXPECT_TRUE(m_lines.all().isEmpty());
}

} // namespace
