#include "iap/IapProgrammer.h"

#include "support/process/ShutdownFlag.h"
#include "tests/common/AnotherAttempt.h"
#include "tests/common/EventWait.h"
#include "tests/common/LeapingClock.h"
#include "tests/common/ProcessGone.h"
#include "tests/common/RecordingReporter.h"
#include "tests/common/TextList.h"
#include "tests/iap/ScriptedProgrammer.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace {

using StartResult = IapProgrammer::StartResult;

/// The programmer when it is run without a window.
class IapProgrammerTest : public testing::Test
{
protected:
    void SetUp() override { dependsOnRealTime("the second that a taskkill gets"); }
    void TearDown() override
    {
        m_programmer.reset();
        ShutdownFlag::instance().lower();
    }

    IapProgrammer &programmer(const Clock &clock = Clock::real())
    {
        if (!m_programmer) {
            m_programmer = std::make_unique<IapProgrammer>(IapProgrammer::Dependencies{
                m_scripts.program(), m_reporter, [this](const QString &line) { m_reporter.log(line); },
                m_lock, clock});
            IapProgrammer *const made = m_programmer.get();
            QObject::connect(made, &IapProgrammer::outputReady, made, &IapProgrammer::readOutput);
            QObject::connect(made, &IapProgrammer::exited, made, &IapProgrammer::conclude);
        }
        return *m_programmer;
    }
    /// Starts the programmer on a USB device with this file.
    StartResult start(const QString &file = QStringLiteral("/srv/dev.bin"))
    {
        std::optional<IapRun> run = programmer().prepare({true, 0xA05A, 0xF113});
        if (!run)
            return StartResult::NotStarted;
        run->portType = QStringLiteral("USB");
        run->updateFile = file;
        return programmer().start(*run, {QString(), 0, QString(), QStringLiteral("08004000"), true});
    }
    bool waitForEnd()
    {
        return processEventsUntil([this] { return !programmer().isRunning(); });
    }
    bool waitForLine(const char *line)
    {
        return processEventsUntil([&] { return m_reporter.logLines().contains(QString::fromUtf8(line)); });
    }

    ScriptedProgrammer m_scripts;
    QTemporaryDir m_folder;
    /// The name differs in each folder, because Windows identifies locks by the file name alone.
    const QString m_lockFile =
        m_folder.filePath(QFileInfo(m_folder.path()).fileName() + QStringLiteral(".lock"));
    UpdateLock m_lock{m_lockFile};
    UpdateLock m_lockElsewhere{m_lockFile};
    RecordingReporter m_reporter;
    std::unique_ptr<IapProgrammer> m_programmer;
};

TEST_F(IapProgrammerTest, ARunWithoutAWindowLogsItsStepsInOrder)
{
    m_scripts.getData(ToolStep::print("device: one;COM:A;\n"));
    m_scripts.startBody(ToolStep::print("SetProgress: 42\n") + m_scripts.tools().pause() +
                        ToolStep::print("SetProgress:100\n"));
    QList<int> progress;
    QObject::connect(&programmer(), &IapProgrammer::progressed,
                     [&](int percent) { progress.append(percent); });
    ASSERT_EQ(start(), StartResult::Started);
    EXPECT_TRUE(programmer().isRunning());
    ASSERT_TRUE(waitForLine("SetProgress: 42"));
    m_scripts.tools().letGoOn();
    ASSERT_TRUE(waitForEnd());
    const QStringList events = m_reporter.events();
    EXPECT_EQ(events.mid(0, events.size() - 1),
              list({"log IAP comm ModeInit...", "log check IAP Process exists...", "log IAPPVID: 41050,61715",
                    "log IAP RunProcessGetData: device: one;COM:A;", "log IAPData: device: one;COM:A;",
                    "log try to Start IAP Process...", "title 当前状态: 尝试升级...", "log SetProgress: 42",
                    "title 当前状态: 正在进行IAP升级", "progress 42", "log SetProgress:100",
                    "title 当前状态: 正在进行IAP升级", "progress 100", "title 当前状态: 升级成功"}));
    EXPECT_TRUE(events.last().startsWith(QLatin1String("log IAP finished, exitCode=")));
    EXPECT_EQ(progress, (QList<int>{42, 100}));
    EXPECT_EQ(m_scripts.runs(),
              list({"GetData|f113|a05a", "Start|1||f113|a05a|0|0||08004000|true|/srv/dev.bin"}));
}

TEST_F(IapProgrammerTest, TheAnswerMayTakeDays)
{
    const RacingClock days;
    m_scripts.getData(ToolStep::sleepMs(300) + ToolStep::print("COM:A;device:one;\n"));
    const IapProgrammer::Ports ports = programmer(days).askForPorts();
    EXPECT_TRUE(ports.wereAskedFor);
    EXPECT_EQ(ports.rawAnswer, QStringLiteral("COM:A;device:one;"));
    EXPECT_EQ(ports.found.comPorts, list({"A"}));
    EXPECT_EQ(ports.found.usbDevices, list({"one"}));
}

TEST_F(IapProgrammerTest, WhileAnotherCopyIsUpdatingNothingIsAskedOrKilled)
{
    UpdateLock::Hold elsewhere = m_lockElsewhere.take(m_reporter);
    const IapProgrammer::Ports ports = programmer().askForPorts();
    EXPECT_FALSE(ports.wereAskedFor);
    EXPECT_EQ(m_reporter.logLines(), list({"The IAP programmer is not asked for its ports while another copy "
                                           "of this program is updating a device."}));
    m_programmer.reset();
    EXPECT_EQ(m_scripts.runs() + m_scripts.kills(), QStringList());
    elsewhere.reset();
    programmer();
    m_programmer.reset();
    EXPECT_EQ(m_scripts.kills(), list({"/F|/IM|IAP_Programmer.exe", "/F|/IM|IAP_Programmer.exe"}));
}

TEST_F(IapProgrammerTest, AFileThatIsNoBinIsRefusedWithALine)
{
    EXPECT_EQ(start(QStringLiteral("/srv/dev.img")), StartResult::NotABinFile);
    EXPECT_EQ(m_reporter.logLines().last(), QStringLiteral("UpDateFile is not .bin.!"));
    EXPECT_FALSE(programmer().isRunning());
    EXPECT_TRUE(m_scripts.starts().isEmpty());
}

TEST_F(IapProgrammerTest, AMissingProgrammerIsNotStartedAndNothingIsLogged)
{
    m_scripts.removeProgrammer();
    EXPECT_EQ(start(), StartResult::NotStarted);
    EXPECT_EQ(m_reporter.logLines().last(), QStringLiteral("try to Start IAP Process..."));
    EXPECT_TRUE(m_reporter.titles().isEmpty());
    EXPECT_FALSE(programmer().isRunning());
}

TEST_F(IapProgrammerTest, ASecondStartDoesNotAffectTheFirst)
{
    m_scripts.startBody(m_scripts.tools().pause());
    ASSERT_EQ(start(), StartResult::Started);
    EXPECT_EQ(start(), StartResult::AlreadyRunning);
    m_scripts.tools().letGoOn();
    EXPECT_TRUE(waitForEnd());
    EXPECT_EQ(m_scripts.starts().size(), 1);
    EXPECT_EQ(m_reporter.logLines().last(), QStringLiteral("IAP finished, exitCode=0"));
}

TEST_F(IapProgrammerTest, TheFailureTextEndsAProgrammerThatIgnoresItsTermination)
{
    m_scripts.startBody(ToolStep::ignoreTermination() + ToolStep::print("no usb iap device!\n") +
                        ToolStep::hang());
    ASSERT_EQ(start(), StartResult::Started);
    EXPECT_TRUE(waitForEnd());
    EXPECT_EQ(m_reporter.titles().last(), QStringLiteral("当前状态: 升级失败!"));
}

TEST_F(IapProgrammerTest, ShuttingDownKillsItAndLogsIt)
{
    const QString pidFile = m_scripts.tools().file(QStringLiteral("pid"));
    m_scripts.startBody(ToolStep::ignoreTermination() + ToolStep::noteProcessId(pidFile) +
                        ToolStep::print("noted\n") + ToolStep::hang());
    ASSERT_EQ(start(), StartResult::Started);
    ASSERT_TRUE(waitForLine("noted"));
    const qint64 pid = WholeFile::read(pidFile).trimmed().toLongLong();
    ASSERT_GT(pid, 0);
    ShutdownFlag::instance().raise();
    EXPECT_FALSE(programmer().isRunning());
    EXPECT_TRUE(processIsReaped(pid));
    EXPECT_EQ(m_reporter.logLines().last(),
              QStringLiteral("The program was closed before the IAP programmer had ended."));
}

} // namespace
