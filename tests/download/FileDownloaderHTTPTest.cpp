#include "download/FileDownloaderHTTP.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/common/RecordingReporter.h"
#include "tests/download/DownloadTest.h"

#include <QRegularExpression>

#include <thread>

namespace {

class FileDownloaderHTTPTest : public DownloadTest
{
protected:
    FileDownloaderHTTPTest() : m_url(serve(QStringLiteral("/manifest.json"), m_content).toString()) {}

    void start() { emit m_downloader.sigDownloadFile(m_url, m_path); }
    bool waitForLine(const QString &beginning)
    {
        return processEventsUntil([&] { return countLines(beginning) > 0; });
    }
    int countLines(const QString &beginning) const
    {
        int found = 0;
        const QStringList lines = m_reporter.logLines();
        for (const QString &line : lines)
            found += line.startsWith(beginning);
        return found;
    }

    const QByteArray m_content = someBytes(20000);
    QString m_url;
    const QString m_path = local("dev.jn");
    RecordingReporter m_reporter;
    RecordedDebugStream m_messages;
    FileDownloaderHTTP m_downloader{nullptr, &m_reporter};
};

TEST_F(FileDownloaderHTTPTest, TheSignalAndTheSlotsAreDeclaredInOrderAndThereAreNoOthers)
{
    EXPECT_EQ(entriesOf(FileDownloaderHTTP::staticMetaObject),
              (std::vector<std::string>{"signal sigDownloadFile(QString,QString)", "slot onReadyRead()",
                                        "slot onDownloadProgress(qlonglong,qlonglong)",
                                        "slot onDownloadFinished()", "slot onDownloadFile(QString,QString)",
                                        "slot onError(QNetworkReply::NetworkError)"}));
}

TEST_F(FileDownloaderHTTPTest, AFileIsDownloadedAndItsProgressIsLoggedInPercent)
{
    start();
    ASSERT_TRUE(processEventsUntil([&] { return m_downloader.succeeded.load(); }));
    EXPECT_EQ(read(m_path), m_content);
    const QStringList lines = m_reporter.logLines();
    EXPECT_EQ(lines.first(), QStringLiteral("try to download dev json..."));
    EXPECT_TRUE(lines.contains(QStringLiteral("Progress:100%")));
    EXPECT_EQ(lines.last(), QStringLiteral("Download finished successfully."));
    EXPECT_EQ(countLines(QStringLiteral("Received:")), 0);
    EXPECT_GE(m_messages.countBeginning(QStringLiteral("Progress: 100 %")), 1);
}

TEST_F(FileDownloaderHTTPTest, WithoutAContentLengthTheBytesAreLoggedInstead)
{
    fault("chunked");
    fault("slow-drip:bytes=5000,ms=150");
    start();
    ASSERT_TRUE(processEventsUntil([&] { return m_downloader.succeeded.load(); }));
    EXPECT_EQ(read(m_path), m_content);
    const QRegularExpression received(QStringLiteral("^Received:[1-9][0-9]*bytes$"));
    EXPECT_FALSE(m_reporter.logLines().filter(received).isEmpty());
    const QRegularExpression toldReceived(QStringLiteral("^Received: [1-9][0-9]* bytes$"));
    EXPECT_FALSE(m_messages.lines().filter(toldReceived).isEmpty());
    // At the end Qt does know the size.
    EXPECT_EQ(countLines(QStringLiteral("Progress:")), countLines(QStringLiteral("Progress:100%")));
}

TEST_F(FileDownloaderHTTPTest, AWorkerPollsWhileTheRequestRunsOnThisThread)
{
    QByteArray seen;
    std::thread worker([&] {
        m_downloader.succeeded = false;
        start();
        for (int i = 0; i < 2000 && !m_downloader.succeeded; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        seen = read(m_path);
    });
    EXPECT_TRUE(processEventsUntil([&] { return m_downloader.succeeded.load(); }));
    worker.join();
    EXPECT_EQ(seen, m_content) << "the file is complete when success is seen";
}

TEST_F(FileDownloaderHTTPTest, AnInvalidAddressIsRefusedWithoutARequest)
{
    m_url = QStringLiteral("http://[");
    start();
    EXPECT_EQ(m_reporter.logLines(),
              (QStringList{QStringLiteral("try to download dev json..."), QStringLiteral("Invalid URL")}));
    EXPECT_EQ(m_messages.lines(), QStringList{QStringLiteral("Invalid URL: http://[")});
    EXPECT_FALSE(QFile::exists(m_path));
    EXPECT_FALSE(m_downloader.succeeded);
}

TEST_F(FileDownloaderHTTPTest, AFileThatCannotBeOpenedIsReportedAndNothingIsRequested)
{
    const QString path = local("missing/dev.jn");
    emit m_downloader.sigDownloadFile(m_url, path);
    pumpFor(50);
    const QStringList log = m_reporter.logLines();
    ASSERT_GE(log.size(), 2);
    EXPECT_EQ(log.at(log.size() - 2), QStringLiteral("Could not open file for writing"));
    QFile tried(path);
    ASSERT_FALSE(tried.open(QIODevice::WriteOnly));
    EXPECT_EQ(log.last(), path + QStringLiteral(": ") + tried.errorString());
    EXPECT_EQ(m_messages.lines(), QStringList{QStringLiteral("Could not open file for writing: ") + path});
    EXPECT_TRUE(server().requests().isEmpty());
    EXPECT_FALSE(m_downloader.succeeded);
}

TEST_F(FileDownloaderHTTPTest, AnErrorRemovesTheFileAndIsReported)
{
    fault("404");
    start();
    ASSERT_TRUE(waitForLine(QStringLiteral("Download finished with error:")));
    EXPECT_FALSE(QFile::exists(m_path));
    EXPECT_FALSE(m_downloader.succeeded);
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("Download error:")), 1);
    EXPECT_TRUE(m_messages.lines().join(QLatin1Char(' ')).contains(QStringLiteral("ContentNotFoundError")));
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("Download finished with error:")), 1);
    EXPECT_EQ(countLines(QStringLiteral("Download finished successfully.")), 0);
    // The error's text follows the colon directly.
    EXPECT_FALSE(m_reporter.logLines().last().startsWith(QStringLiteral("Download finished with error: ")));
}

TEST_F(FileDownloaderHTTPTest, AConnectionThatBreaksIsNoSuccess)
{
    for (const char *text :
         {"close-after:bytes=0", "close-after:bytes=10000", "close-after:bytes=19999", "503"}) {
        server().clearFaults();
        fault(text);
        const int before = countLines(QStringLiteral("Download finished with error:"));
        start();
        ASSERT_TRUE(processEventsUntil([&] {
            return countLines(QStringLiteral("Download finished with error:")) > before;
        })) << text;
        EXPECT_FALSE(m_downloader.succeeded) << text;
        EXPECT_FALSE(QFile::exists(m_path)) << text;
    }
}

TEST_F(FileDownloaderHTTPTest, AResetConnectionIsNoSuccess)
{
    // Qt misses some resets; the wait then ends with the caller's time limit.
    fault("reset-after:bytes=10000");
    start();
    processEventsUntil([&] { return countLines(QStringLiteral("Download finished")) > 0; }, 500);
    m_downloader.abandonDownload();
    ASSERT_TRUE(processEventsUntil([&] { return !QFile::exists(m_path); }))
        << qPrintable(m_reporter.logLines().join(QLatin1Char('|'))) << read(m_path).size();
    EXPECT_FALSE(m_downloader.succeeded);
    EXPECT_EQ(countLines(QStringLiteral("Download finished successfully.")), 0);
}

TEST_F(FileDownloaderHTTPTest, ARedirectIsFollowed)
{
    serve(QStringLiteral("/other.json"), m_content);
    fault("redirect:path=/manifest.json,to=/other.json");
    start();
    ASSERT_TRUE(processEventsUntil([&] { return m_downloader.succeeded.load(); }));
    EXPECT_EQ(read(m_path), m_content);
}

TEST_F(FileDownloaderHTTPTest, AnAbandonedRequestLeavesNoFileAndLogsNothing)
{
    fault("stall-after:bytes=5000");
    start();
    ASSERT_TRUE(processEventsUntil([&] { return read(m_path).size() == 5000; }));
    const QStringList before = m_reporter.logLines();
    m_downloader.abandonDownload();
    ASSERT_TRUE(
        processEventsUntil([&] { return !QFile::exists(m_path) && server().openConnections() == 0; }));
    EXPECT_EQ(m_reporter.logLines(), before);
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("Download")), 0);
    EXPECT_FALSE(m_downloader.succeeded);
}

TEST_F(FileDownloaderHTTPTest, ARequestAfterAnAbandonedOneIsComplete)
{
    fault("slow-drip:bytes=1000,ms=10,times=1");
    start();
    ASSERT_TRUE(processEventsUntil([&] { return read(m_path).size() >= 1000; }));
    m_downloader.abandonDownload();
    std::thread worker([&] { start(); });
    worker.join();
    ASSERT_TRUE(processEventsUntil([&] { return m_downloader.succeeded.load(); }));
    EXPECT_EQ(read(m_path), m_content);
    EXPECT_EQ(countLines(QStringLiteral("Download finished")), 1);
}

TEST_F(FileDownloaderHTTPTest, ANewRequestAbortsARunningOne)
{
    fault("stall-after:bytes=5000,times=1");
    start();
    ASSERT_TRUE(processEventsUntil([&] { return read(m_path).size() == 5000; }));
    const QString second = local("second.jn");
    emit m_downloader.sigDownloadFile(m_url, second);
    ASSERT_TRUE(processEventsUntil([&] { return m_downloader.succeeded.load(); }));
    EXPECT_EQ(read(second), m_content);
    EXPECT_FALSE(QFile::exists(m_path));
}

} // namespace
