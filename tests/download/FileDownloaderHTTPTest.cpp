#include "tests/download/DownloadTest.h"
#include "tests/support/RecordedDebugStream.h"
#include "tests/support/RecordingReporter.h"

#include "download/FileDownloaderHTTP.h"

#include <QRegularExpression>

#include <memory>
#include <type_traits>

namespace {

class FileDownloaderHTTPTest : public DownloadTest
{
protected:
    void fetch() { emit m_downloader.sigDownloadFile(url().toString(), local()); }
    bool waitForLine(const char *start)
    {
        return waitUntil([&] {
            for (const QString &line : m_log.logLines()) {
                if (line.startsWith(QLatin1String(start)))
                    return true;
            }
            return false;
        });
    }

    RecordingReporter m_log;
    FileDownloaderHTTP m_downloader{nullptr, &m_log};
};

TEST_F(FileDownloaderHTTPTest, AFileIsFetchedInOneGetAndItsProgressIsLogged)
{
    const QByteArray content = serve(distinctBytes(3000));
    const RecordedDebugStream debug;
    fetch();
    ASSERT_TRUE(waitUntil([&] { return m_downloader.succeeded.load(); }));
    EXPECT_EQ(contentOf(local()), content);
    EXPECT_EQ(m_log.logLines().first(), QStringLiteral("try to download dev json..."));
    EXPECT_TRUE(m_log.logLines().contains(QStringLiteral("Progress:100%")));
    EXPECT_EQ(m_log.logLines().last(), QStringLiteral("Download finished successfully."));
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("Progress: 100 %")));
    EXPECT_EQ(m_server.requests().size(), 1);
}

TEST_F(FileDownloaderHTTPTest, AServerWithoutALengthGivesReceivedLines)
{
    const QByteArray content = serve(distinctBytes(3000));
    setFault("chunked");
    // Slowly, for the toolkit reports the end of a body as 100 % of itself.
    setFault("slow-drip:bytes=500,ms=60");
    const RecordedDebugStream debug;
    fetch();
    ASSERT_TRUE(waitUntil([&] { return m_downloader.succeeded.load(); }));
    EXPECT_EQ(contentOf(local()), content);
    const QStringList received =
        m_log.logLines().filter(QRegularExpression(QStringLiteral("^Received:[0-9]+bytes$")));
    EXPECT_GE(received.size(), 2);
    const QStringList percentages = m_log.logLines().filter(QStringLiteral("Progress:"));
    EXPECT_LE(percentages.size(), 1);
    EXPECT_FALSE(
        debug.lines().filter(QRegularExpression(QStringLiteral("^Received: [0-9]+ bytes$"))).isEmpty());
}

TEST_F(FileDownloaderHTTPTest, AnInvalidUrlIsNotAskedFor)
{
    const RecordedDebugStream debug;
    emit m_downloader.sigDownloadFile(QStringLiteral("http://[broken"), local());
    EXPECT_EQ(m_log.logLines(),
              (QStringList{QStringLiteral("try to download dev json..."), QStringLiteral("Invalid URL")}));
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("Invalid URL: http://[broken")));
    EXPECT_FALSE(QFile::exists(local()));
    EXPECT_FALSE(m_downloader.succeeded);
}

TEST_F(FileDownloaderHTTPTest, AFileThatCannotBeOpenedIsNotAskedFor)
{
    const QString path = m_folder.filePath(QStringLiteral("missing/local"));
    const RecordedDebugStream debug;
    emit m_downloader.sigDownloadFile(url().toString(), path);
    EXPECT_EQ(m_log.logLines().mid(0, 2), (QStringList{QStringLiteral("try to download dev json..."),
                                                       QStringLiteral("Could not open file for writing")}));
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("Could not open file for writing: ") + path));
    pump(30);
    EXPECT_TRUE(m_server.requests().isEmpty());
    EXPECT_FALSE(m_downloader.succeeded);
}

TEST_F(FileDownloaderHTTPTest, AnEarlierFileIsTruncated)
{
    serve("new");
    write(local(), "something longer");
    fetch();
    ASSERT_TRUE(waitUntil([&] { return m_downloader.succeeded.load(); }));
    EXPECT_EQ(contentOf(local()), "new");
}

TEST_F(FileDownloaderHTTPTest, AFailureRemovesTheFileAndSaysWhy)
{
    serve(distinctBytes(30000));
    for (const char *fault : {"404", "503"}) {
        m_server.clearFaults();
        setFault(fault);
        const RecordedDebugStream debug;
        const int before = m_log.logLines().filter(QStringLiteral("finished with error:")).size();
        fetch();
        ASSERT_TRUE(waitUntil([&] {
            return m_log.logLines().filter(QStringLiteral("finished with error:")).size() > before;
        })) << fault;
        EXPECT_GT(m_log.logLines().last().size(), int(sizeof "Download finished with error:")) << fault;
        EXPECT_FALSE(debug.lines().filter(QStringLiteral("Download error: QNetworkReply::")).isEmpty())
            << fault;
        EXPECT_FALSE(QFile::exists(local())) << fault;
        EXPECT_FALSE(m_downloader.succeeded) << fault;
    }
}

TEST_F(FileDownloaderHTTPTest, APartialFileIsRemovedWhenTheConnectionBreaks)
{
    serve(distinctBytes(30000));
    setFault("slow-drip:bytes=1000,ms=10");
    setFault("reset-after:bytes=10000");
    fetch();
    ASSERT_TRUE(waitUntil([&] { return contentOf(local()).size() >= 1000; }));
    ASSERT_TRUE(waitForLine("Download finished with error:"));
    EXPECT_FALSE(QFile::exists(local()));
    EXPECT_FALSE(m_downloader.succeeded);
}

TEST_F(FileDownloaderHTTPTest, AFullDiskEndsTheRequestAndSaysWhy)
{
    serve(distinctBytes(3000));
    // A link: what is removed after the failure must not be the device itself.
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/full"), local()));
    fetch();
    ASSERT_TRUE(waitForLine("Download finished with error:"));
    EXPECT_FALSE(m_log.logLines().filter(QStringLiteral("Could not write file: ")).isEmpty());
    EXPECT_FALSE(m_downloader.succeeded);
    EXPECT_TRUE(QFile::exists(QStringLiteral("/dev/full")));
}

TEST_F(FileDownloaderHTTPTest, OnlyTheCallerClearsTheFlag)
{
    serve("content");
    static_assert(std::is_same_v<decltype(m_downloader.succeeded), std::atomic<bool>>);
    fetch();
    ASSERT_TRUE(waitUntil([&] { return m_downloader.succeeded.load(); }));
    setFault("404");
    fetch();
    ASSERT_TRUE(waitForLine("Download finished with error:"));
    EXPECT_TRUE(m_downloader.succeeded);
}

TEST_F(FileDownloaderHTTPTest, ASecondRequestDropsTheFirst)
{
    const QByteArray content = serve(distinctBytes(3000));
    setFault("slow-drip:bytes=100,ms=20,times=1");
    fetch();
    ASSERT_TRUE(waitUntil([&] { return contentOf(local()).size() >= 200; }));
    fetch();
    ASSERT_TRUE(waitUntil([&] { return m_downloader.succeeded.load(); }));
    EXPECT_EQ(contentOf(local()), content);
    const QStringList lines = m_log.logLines();
    pump(300);
    EXPECT_EQ(m_log.logLines(), lines);
    EXPECT_EQ(contentOf(local()), content);
    EXPECT_EQ(m_log.logLines().count(QStringLiteral("Download finished successfully.")), 1);
}

TEST_F(FileDownloaderHTTPTest, AnAbandonedRequestEndsWithoutAWordAndItsFileIsRemoved)
{
    serve(distinctBytes(3000));
    setFault("slow-drip:bytes=100,ms=20");
    fetch();
    ASSERT_TRUE(waitUntil([&] { return contentOf(local()).size() >= 200; }));
    const std::unique_ptr<QThread> other(QThread::create([&] { m_downloader.abandonDownload(); }));
    other->start();
    other->wait();
    const QStringList lines = m_log.logLines();
    ASSERT_TRUE(waitUntil([&] { return !QFile::exists(local()); }));
    EXPECT_TRUE(waitUntil([&] { return m_server.openConnections() == 0; }));
    pump(50);
    EXPECT_FALSE(m_downloader.succeeded);
    EXPECT_FALSE(QFile::exists(local()));
    EXPECT_TRUE(m_log.logLines().filter(QStringLiteral("finished")).isEmpty());
    EXPECT_EQ(m_log.logLines(), lines);
}

TEST_F(FileDownloaderHTTPTest, ARequestFromAnotherThreadRunsOnItsOwn)
{
    const QByteArray content = serve(distinctBytes(3000));
    bool succeeded = false;
    const std::unique_ptr<QThread> worker(QThread::create([&] {
        fetch();
        for (int i = 0; i < 1000 && !m_downloader.succeeded; ++i)
            QThread::msleep(10);
        succeeded = m_downloader.succeeded;
    }));
    worker->start();
    ASSERT_TRUE(waitUntil([&] { return worker->isFinished(); }));
    EXPECT_TRUE(succeeded);
    EXPECT_EQ(contentOf(local()), content);
}

} // namespace
