#include "tests/update/UpdateWorkflowTest.h"

#include "download/FileDownloaderHTTP.h"
#include "download/ThreadFileDownloader.h"
#include "harness/BuildPaths.h"
#include "harness/server/FirmwareRoot.h"
#include "harness/server/ServerSession.h"
#include "tests/common/ProcessUse.h"
#include "update/FirmwareFetch.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QTcpServer>
#include <QtConcurrent>

namespace {

/// A clock whose sleeps are real but short.
class ShortClock : public Clock
{
public:
    qint64 nowMs() const override { return Clock::real().nowMs(); }
    bool sleepMs(int milliseconds) override { return Clock::real().sleepMs(qMin(milliseconds, 3)); }
    bool isShuttingDown() const override { return false; }
};

/// Whole updates in one process, with a real server and real flashers.
class ManyUpdatesTest : public FlasherTest
{
protected:
    void SetUp() override
    {
        // A free port, because the manifest must contain it before the server exists.
        QTcpServer free;
        ASSERT_TRUE(free.listen(QHostAddress::LocalHost));
        const quint16 port = free.serverPort();
        free.close();
        m_firmware = std::make_unique<FirmwareRoot>(QStringLiteral("http://127.0.0.1:%1").arg(port));
        m_firmware->addModel(QStringLiteral("M1"), 100000);
        ASSERT_TRUE(m_server.start(m_firmware->folder(), port)) << m_server.errorText().toStdString();

        m_paths.applicationDir = m_tools.file(QStringLiteral("app"));
        m_paths.savedManifest = m_paths.applicationDir + QStringLiteral("/qmake/dev.jn");
        m_paths.temporaryFolder = m_tools.file(QStringLiteral("Tmp"));
        m_paths.manifestUrl =
            QStringLiteral("http://127.0.0.1:%1/Tessilonix/firmware/firmware-version-check-test.json")
                .arg(port);
        ScriptedTools::place(m_paths.usbFlasher,
                             ScriptedTools::scriptOf(ToolStep::print("Upgrade fwc: image.target.os\n") +
                                                     ToolStep::step("success")));
        m_choices.setWriteType(QStringLiteral("USB"));
        m_choices.setRestartCheckable(true);
        ChosenDevice device;
        device.name = QStringLiteral("M1");
        m_choices.setFound(device, false);
    }

    /// Runs an update on a pool thread, as the start button does, and returns its last title.
    QString update()
    {
        RecordingReporter reporter;
        FakeUpdateHost host(reporter);
        if (!m_session->isRunning())
            m_session.begin();
        const QFuture<void> run = QtConcurrent::run([&] {
            FirmwareFetch fetch(reporter, *m_session, m_choices, m_short, m_paths, *m_downloader, *m_segments,
                                nullptr);
            const UpdateWorkflow::Dependencies dependencies{reporter, *m_session, m_choices, host,
                                                            m_short,  m_paths,    m_launch,  fetch};
            UpdateWorkflow(dependencies, m_choices.request()).run();
        });
        while (!run.isFinished())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        m_log = reporter.logLines();
        return reporter.titles().value(reporter.titles().size() - 1);
    }
    void updateOften(int times)
    {
        for (int i = 0; i < times; ++i) {
            ASSERT_EQ(update(), QStringLiteral("Current Status: Upgrade Successful"))
                << m_log.join(QLatin1Char('\n')).toStdString();
        }
        // For objects that are deleted after their update.
        for (int i = 0; i < 20; ++i) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            Clock::real().sleepMs(10);
        }
    }

    std::unique_ptr<FirmwareRoot> m_firmware;
    ServerSession m_server;
    ShortClock m_short;
    LaunchOptions m_launch;
    RecordingReporter m_downloadReporter;
    std::unique_ptr<FileDownloaderHTTP> m_downloader =
        std::make_unique<FileDownloaderHTTP>(nullptr, &m_downloadReporter);
    std::unique_ptr<ThreadFileDownloader> m_segments = std::make_unique<ThreadFileDownloader>(m_short);
    QStringList m_log;
};

/// Runs 30 updates, or 200 with QUILLMARSH_LONG_TESTS set. The list of segments grows by ten small objects in
/// each update; everything else is released.
TEST_F(ManyUpdatesTest, ResourcesDoNotGrowAfterTheFirstTen)
{
    const int updates = qEnvironmentVariableIsSet("QUILLMARSH_LONG_TESTS") ? 200 : 30;
    updateOften(10);
    const ProcessUse early = ProcessUse::of();
    updateOften(updates - 10);
    const ProcessUse late = ProcessUse::of();
    EXPECT_EQ(m_segments->segments.size(), 10 * updates);
    // A thread of the last update may still be ending; a leak would be one or ten for each update.
    EXPECT_LE(late.descriptors, early.descriptors + 3);
    EXPECT_LE(late.threads, early.threads + 3);
    const int grown = late.residentKilobytes - early.residentKilobytes;
    RecordProperty("memory_grown_kb", grown);
    RecordProperty("descriptors", late.descriptors);
    RecordProperty("threads", late.threads);
    if (ProcessUse::memoryTells()) {
        EXPECT_LT(grown, 3000 + 30 * updates);
    }
}

} // namespace
