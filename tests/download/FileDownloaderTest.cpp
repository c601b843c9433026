#include "download/FileDownloader.h"
#include "tests/common/AnotherAttempt.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/download/DownloadTest.h"

#include <QDir>
#include <QFileInfo>
#include <QNetworkAccessManager>

namespace {

class FileDownloaderTest : public DownloadTest
{
protected:
    FileDownloaderTest() { serve(QStringLiteral("/image.bin"), m_content); }

    /// Creates a downloader of bytes [start, end) with a short retry delay.
    std::unique_ptr<FileDownloader> make(qint64 start, qint64 end, const QString &path)
    {
        auto downloader = std::make_unique<FileDownloader>(server().url(QStringLiteral("/image.bin")), path);
        downloader->startByte = start;
        downloader->endByte = end;
        downloader->retryDelay = 5;
        return downloader;
    }
    std::unique_ptr<FileDownloader> make(qint64 start, qint64 end) { return make(start, end, m_path); }
    static bool waitFor(const FileDownloader &downloader, int state)
    {
        return processEventsUntil([&] { return downloader.state == state; });
    }
    static bool waitUntilGivenUp(const FileDownloader &downloader)
    {
        return processEventsUntil([&] { return downloader.hasGivenUp(); });
    }
    static QNetworkReply *replyOf(const FileDownloader &downloader)
    {
        return downloader.findChild<QNetworkReply *>();
    }

    const QByteArray m_content = someBytes(100000);
    const QString m_path = local("part");
};

TEST_F(FileDownloaderTest, TheSlotsAreDeclaredInOrderAndThereAreNoOthers)
{
    EXPECT_EQ(entriesOf(FileDownloader::staticMetaObject),
              (std::vector<std::string>{
                  "slot onReadyRead()", "slot onDownloadProgress(qlonglong,qlonglong)",
                  "slot onMetaDataChanged()", "slot onFinished(QNetworkReply*)", "slot retryDownload()",
                  "slot onErrorOccurred(QNetworkReply::NetworkError)", "slot pause()", "slot resume()"}));
}

TEST_F(FileDownloaderTest, ANewDownloaderHas20RetriesASecondApart)
{
    const FileDownloader downloader(QUrl(), m_path);
    EXPECT_EQ(downloader.state, 0);
    EXPECT_EQ(downloader.retryCount, 0);
    EXPECT_EQ(downloader.maxRetries, 20);
    EXPECT_EQ(downloader.retryDelay, 1000);
    EXPECT_EQ(downloader.stallTimeout, 30000);
    EXPECT_EQ(downloader.CurrentPackDownloadSize, 0);
    EXPECT_EQ(downloader.m_totalSize, 0);
}

TEST_F(FileDownloaderTest, EndZeroAndNoLocalFileIsAPlainGetOfTheWholeFile)
{
    RecordedDebugStream messages;
    const auto downloader = make(0, 0);
    downloader->startDownload();
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(read(m_path), m_content);
    EXPECT_EQ(rangesAsked(), QList<QByteArray>{QByteArray()});
    EXPECT_FALSE(server().requests().first().headers.contains("range"));
    EXPECT_EQ(downloader->CurrentPackDownloadSize, m_content.size());
    EXPECT_EQ(downloader->m_totalSize, m_content.size());
    EXPECT_EQ(messages.countBeginning(QStringLiteral("Download completed successfully!")), 1);
    EXPECT_EQ(messages.countBeginning(QStringLiteral("Resuming from byte:")), 0);
    EXPECT_EQ(messages.countBeginning(QStringLiteral("Total file size: 100000")), 1);
    EXPECT_GE(messages.countBeginning(QStringLiteral("Download progress: 100000 / 100000")), 1);
    EXPECT_GE(messages.countBeginning(QStringLiteral("CurrentPackDownloadSize: 100000")), 1);
    EXPECT_GE(messages.countBeginning(QStringLiteral("m_totalSize: 100000")), 1);
}

TEST_F(FileDownloaderTest, WithEndZeroAndALocalFileTheRestIsRequested)
{
    RecordedDebugStream messages;
    write(m_path, m_content.left(1234));
    const auto downloader = make(0, 0);
    downloader->startDownload();
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(rangesAsked(), QList<QByteArray>{"bytes=1234-"});
    EXPECT_EQ(read(m_path), m_content);
    EXPECT_EQ(downloader->CurrentPackDownloadSize, m_content.size());
    EXPECT_EQ(messages.countBeginning(QStringLiteral("Resuming from byte: 1234")), 1);
}

TEST_F(FileDownloaderTest, ARangeIsRequestedWithAnInclusiveEnd)
{
    const auto downloader = make(1000, 3000);
    downloader->startDownload();
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(rangesAsked(), QList<QByteArray>{"bytes=1000-2999"});
    EXPECT_EQ(read(m_path), m_content.mid(1000, 2000));
    EXPECT_EQ(downloader->CurrentPackDownloadSize, 2000);
}

TEST_F(FileDownloaderTest, WithALocalFileTheRestOfTheRangeIsRequested)
{
    RecordedDebugStream messages;
    write(m_path, m_content.mid(1000, 500));
    const auto downloader = make(1000, 3000);
    downloader->startDownload();
    EXPECT_EQ(downloader->CurrentPackDownloadSize, 500);
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(rangesAsked(), QList<QByteArray>{"bytes=1500-2999"});
    EXPECT_EQ(read(m_path), m_content.mid(1000, 2000));
    EXPECT_EQ(downloader->CurrentPackDownloadSize, 2000);
    EXPECT_EQ(messages.countBeginning(QStringLiteral("Resuming from byte: 500")), 1);
}

TEST_F(FileDownloaderTest, ARangeThatIsOnDiskFinishesAtOnceWithoutARequest)
{
    for (const int length : {2000, 2001}) {
        RecordedDebugStream messages;
        write(m_path, QByteArray(length, 'x'));
        const auto downloader = make(1000, 3000);
        downloader->startDownload();
        EXPECT_EQ(downloader->state, 1);
        EXPECT_EQ(downloader->CurrentPackDownloadSize, length);
        EXPECT_EQ(messages.countBeginning(QStringLiteral("下载已完成")), 1);
        pumpFor(50);
        EXPECT_TRUE(server().requests().isEmpty());
    }
}

TEST_F(FileDownloaderTest, IfOneByteOfARangeIsMissingThatByteIsRequested)
{
    write(m_path, m_content.mid(1000, 1999));
    const auto downloader = make(1000, 3000);
    downloader->startDownload();
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(rangesAsked(), QList<QByteArray>{"bytes=2999-2999"});
    EXPECT_EQ(read(m_path), m_content.mid(1000, 2000));
}

TEST_F(FileDownloaderTest, A416CountsAsFinishedAndIsNotRetried)
{
    RecordedDebugStream messages;
    write(m_path, m_content);
    const auto downloader = make(0, 0);
    downloader->startDownload(); // requests the bytes after the last one
    ASSERT_TRUE(
        processEventsUntil([&] { return messages.countBeginning(QStringLiteral("state Code: 416")) == 1; }));
    pumpFor(50);
    EXPECT_EQ(downloader->state, 1);
    EXPECT_EQ(downloader->retryCount, 0);
    EXPECT_EQ(messages.countBeginning(QStringLiteral("you download success")), 1);
    EXPECT_EQ(messages.countBeginning(QStringLiteral("Download failed:")), 1);
    EXPECT_EQ(server().requests().size(), 1);
    EXPECT_EQ(read(m_path), m_content);
}

TEST_F(FileDownloaderTest, ContentRangeTakesPrecedenceOverContentLength)
{
    const auto downloader = make(1000, 3000);
    downloader->startDownload();
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(downloader->m_totalSize, 100000);
}

TEST_F(FileDownloaderTest, AContentRangeWithoutASlashDoesNotChangeTheTotalSize)
{
    fault("header:name=Content-Range,value=bytes 1000-2999");
    const auto downloader = make(1000, 3000);
    downloader->m_totalSize = 77;
    downloader->startDownload();
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(downloader->m_totalSize, 77);
    EXPECT_EQ(read(m_path), m_content.mid(1000, 2000));
}

TEST_F(FileDownloaderTest, PauseDoesNotStopTheTransferAndDataArrivingWhilePausedIsNotWritten)
{
    RecordedDebugStream messages;
    fault("slow-drip:bytes=5000,ms=15,times=1");
    const auto downloader = make(0, 0);
    downloader->startDownload();
    ASSERT_TRUE(processEventsUntil([&] { return !read(m_path).isEmpty(); }));
    QNetworkReply *reply = replyOf(*downloader);
    downloader->pause();
    EXPECT_EQ(downloader->state, 2);
    const QByteArray before = read(m_path);
    const qint64 sizeBefore = downloader->CurrentPackDownloadSize;
    ASSERT_TRUE(processEventsUntil([&] { return reply->isFinished(); })) << "the transfer goes on to its end";
    pumpFor(20);
    EXPECT_EQ(reply->error(), QNetworkReply::NoError);
    EXPECT_EQ(downloader->state, 2);
    EXPECT_EQ(read(m_path), before);
    EXPECT_LT(before.size(), m_content.size());
    EXPECT_EQ(downloader->CurrentPackDownloadSize, sizeBefore);
    EXPECT_EQ(messages.countBeginning(QStringLiteral("Download paused")), 1);
    EXPECT_EQ(messages.countBeginning(QStringLiteral("Download completed successfully!")), 0);
    EXPECT_EQ(replyOf(*downloader), reply) << "a reply that ends while paused is kept";

    downloader->resume();
    EXPECT_EQ(messages.countBeginning(QStringLiteral("Resuming download")), 1);
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(rangesAsked().last(), "bytes=" + QByteArray::number(before.size()) + "-");
    EXPECT_EQ(read(m_path), m_content);
}

TEST_F(FileDownloaderTest, ResumingWhileTheOldTransferRunsWritesNoByteTwice)
{
    fault("slow-drip:bytes=1000,ms=10");
    const auto downloader = make(1000, 41000);
    downloader->startDownload();
    for (int i = 0; i < 3; ++i) {
        const qint64 before = read(m_path).size();
        ASSERT_TRUE(processEventsUntil([&] { return read(m_path).size() > before; }));
        downloader->pause();
        pumpFor(10);
        downloader->resume();
    }
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(read(m_path), m_content.mid(1000, 40000));
}

TEST_F(FileDownloaderTest, PauseResumeAndRetryDoNothingInOtherStates)
{
    RecordedDebugStream messages;
    FileDownloader downloader(server().url(QStringLiteral("/image.bin")), m_path);
    downloader.resume();
    EXPECT_EQ(downloader.state, 0);
    downloader.state = FileDownloader::Finished;
    downloader.pause();
    EXPECT_EQ(downloader.state, 1);
    downloader.state = FileDownloader::Paused;
    downloader.retryDownload();
    EXPECT_EQ(downloader.retryCount, 0);
    EXPECT_TRUE(messages.lines().isEmpty());
}

TEST_F(FileDownloaderTest, ARequestedRetryIsCountedAndStartsAfterTheDelay)
{
    RecordedDebugStream messages;
    const auto downloader = make(1000, 3000);
    downloader->retryDownload();
    EXPECT_EQ(downloader->retryCount, 1);
    EXPECT_EQ(messages.lines(), QStringList{QStringLiteral("Retrying download. Attempt: 1")});
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(read(m_path), m_content.mid(1000, 2000));
}

TEST_F(FileDownloaderTest, ANetworkErrorIsReportedAndRetried)
{
    RecordedDebugStream messages;
    fault("503:times=1");
    const auto downloader = make(1000, 3000);
    downloader->startDownload();
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(read(m_path), m_content.mid(1000, 2000)) << "an error page is not part of the file";
    QStringList told;
    const QStringList texts = messages.lines();
    for (const QString &text : texts) {
        for (const char *beginning :
             {"Network error occurred:", "Retrying download. Attempt: 1",
              "Download failed:", "state Code: 503", "Download completed successfully!"}) {
            if (text.startsWith(QString::fromLatin1(beginning)))
                told.append(QString::fromLatin1(beginning));
        }
    }
    EXPECT_EQ(told, (QStringList{QStringLiteral("Network error occurred:"),
                                 QStringLiteral("Retrying download. Attempt: 1"),
                                 QStringLiteral("Download failed:"), QStringLiteral("state Code: 503"),
                                 QStringLiteral("Download completed successfully!")}));
    EXPECT_TRUE(texts.join(QLatin1Char('\n')).contains(QStringLiteral("ServiceUnavailableError")));
    EXPECT_EQ(messages.lines(QtCriticalMsg).size(), 2);
}

TEST_F(FileDownloaderTest, AnErrorPageNeverReachesTheFile)
{
    for (const char *text : {"503:times=1", "404:times=1"}) {
        for (const qint64 end : {0, 3000}) {
            QFile::remove(m_path);
            server().clearFaults();
            fault(text);
            const auto downloader = make(0, end);
            downloader->startDownload();
            ASSERT_TRUE(waitFor(*downloader, 1)) << text;
            EXPECT_EQ(read(m_path), end ? m_content.left(3000) : m_content) << text;
        }
    }
}

TEST_F(FileDownloaderTest, ARetryWaitsItsDelay)
{
    fault("503:times=1");
    const auto downloader = make(1000, 3000);
    downloader->retryDelay = 300;
    downloader->startDownload();
    ASSERT_TRUE(waitFor(*downloader, 1));
    const auto requests = server().requests();
    ASSERT_EQ(requests.size(), 2);
    EXPECT_GE(requests.at(1).atMs - requests.at(0).atMs, 280);
}

TEST_F(FileDownloaderTest, After20RetriesItGivesUpForGood)
{
    RecordedDebugStream messages;
    fault("404");
    const auto downloader = make(1000, 3000);
    downloader->startDownload();
    ASSERT_TRUE(waitUntilGivenUp(*downloader));
    pumpFor(50);
    EXPECT_EQ(downloader->state, -1);
    EXPECT_EQ(downloader->retryCount, 20);
    EXPECT_EQ(server().requests().size(), 21);
    EXPECT_EQ(messages.countBeginning(QStringLiteral("Retrying download. Attempt:")), 20);
    EXPECT_EQ(messages.countBeginning(QStringLiteral("Maximum retry attempts reached. Download failed.")), 1);
    EXPECT_FALSE(downloader->lastProblem().isEmpty());
}

TEST_F(FileDownloaderTest, TheRetryCountIsNeverReset)
{
    fault("503:times=3");
    const auto downloader = make(1000, 3000);
    downloader->startDownload();
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(downloader->retryCount, 3);
    QFile::remove(m_path);
    server().clearFaults();
    fault("503:times=1");
    downloader->startDownload();
    EXPECT_EQ(downloader->state, 0);
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(downloader->retryCount, 4);
}

TEST_F(FileDownloaderTest, ARetryResumesFromTheLocalFilesLength)
{
    fault("stall-after:bytes=700,times=1");
    const auto downloader = make(1000, 3000);
    dependsOnRealTime("the transfer's time-out, shortened to 300 ms");
    downloader->stallTimeout = 300;
    downloader->startDownload();
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(rangesAsked(), (QList<QByteArray>{"bytes=1000-2999", "bytes=1700-2999"}));
    EXPECT_EQ(read(m_path), m_content.mid(1000, 2000));
}

TEST_F(FileDownloaderTest, ATransferThatStallsIsRetried)
{
    for (const char *text : {"stall:times=1", "stall-after:bytes=700,times=1"}) {
        QFile::remove(m_path);
        server().clearFaults();
        fault(text);
        const auto downloader = make(1000, 3000);
        downloader->stallTimeout = 300;
        downloader->startDownload();
        ASSERT_TRUE(waitFor(*downloader, 1)) << text;
        EXPECT_EQ(read(m_path), m_content.mid(1000, 2000)) << text;
    }
}

TEST_F(FileDownloaderTest, TheLocalFileIsNeitherTruncatedNorRemoved)
{
    fault("404");
    write(m_path, QByteArray("mine"));
    const auto downloader = make(1000, 3000);
    downloader->maxRetries = 2;
    downloader->startDownload();
    ASSERT_TRUE(waitUntilGivenUp(*downloader));
    EXPECT_EQ(read(m_path), "mine");
}

TEST_F(FileDownloaderTest, AFileThatCannotBeOpenedIsTriedAgainWithoutANewRequest)
{
    RecordedDebugStream messages;
    fault("slow-drip:bytes=20000,ms=40");
    const QString folder = local("folder");
    const QString path = folder + QStringLiteral("/part");
    const auto downloader = make(0, 0, path);
    downloader->startDownload();
    const QString text = QStringLiteral("Unable to open file for writing: ") + path;
    ASSERT_TRUE(processEventsUntil([&] { return messages.countBeginning(text) > 0; }));
    EXPECT_EQ(downloader->state, 0);
    ASSERT_TRUE(QDir().mkdir(folder));
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(read(path), m_content);
    EXPECT_EQ(server().requests().size(), 1);
}

TEST_F(FileDownloaderTest, AFullBufferIsReadAgainWhenTheFileCanBeOpened)
{
    // Larger than the read buffer: without another read, no more data would arrive.
    const QByteArray content = someBytes(3 * 1024 * 1024);
    const QUrl url = serve(QStringLiteral("/large.bin"), content);
    const QString folder = local("folder");
    FileDownloader downloader(url, folder + QStringLiteral("/part"));
    downloader.retryDelay = 20;
    RecordedDebugStream messages;
    downloader.startDownload();
    QNetworkReply *reply = replyOf(downloader);
    ASSERT_TRUE(processEventsUntil([&] { return reply->bytesAvailable() >= 1024 * 1024; }));
    pumpFor(50);
    ASSERT_TRUE(QDir().mkdir(folder));
    ASSERT_TRUE(waitFor(downloader, 1));
    EXPECT_EQ(read(downloader.filePath), content);
    EXPECT_EQ(server().requests().size(), 1);
}

TEST_F(FileDownloaderTest, AFileThatCanNeverBeOpenedFailsInsteadOfFinishing)
{
    const auto downloader = make(1000, 3000, local("missing/part"));
    downloader->maxRetries = 2;
    downloader->startDownload();
    ASSERT_TRUE(waitUntilGivenUp(*downloader));
    EXPECT_EQ(downloader->state, -1);
    EXPECT_TRUE(downloader->lastProblem().contains(QStringLiteral("missing/part")));
}

TEST_F(FileDownloaderTest, AWholeFileSentForARangeIsCutToIt)
{
    fault("ignore-range");
    const auto downloader = make(1000, 3000);
    downloader->startDownload();
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(read(m_path), m_content.mid(1000, 2000));
    EXPECT_EQ(downloader->CurrentPackDownloadSize, 2000);
}

TEST_F(FileDownloaderTest, AWholeFileSentForTheRestOfARangeIsCutToTheRest)
{
    fault("ignore-range");
    write(m_path, m_content.mid(1000, 500));
    const auto downloader = make(1000, 3000);
    downloader->startDownload();
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(read(m_path), m_content.mid(1000, 2000));
}

TEST_F(FileDownloaderTest, AShortRangeIsRetriedWhileRetriesBringBytes)
{
    fault("short-206:bytes=600");
    const auto downloader = make(1000, 3000);
    downloader->startDownload();
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(read(m_path), m_content.mid(1000, 2000));
    EXPECT_EQ(rangesAsked(), (QList<QByteArray>{"bytes=1000-2999", "bytes=1600-2999", "bytes=2200-2999",
                                                "bytes=2800-2999"}));
    EXPECT_EQ(downloader->retryCount, 3);
}

TEST_F(FileDownloaderTest, ARetryWithoutBytesCountsAsFinishedAndIsLeftToTheMd5Check)
{
    fault("short-206:bytes=600,times=1");
    fault("short-206:bytes=0,nth=2");
    const auto downloader = make(1000, 3000);
    downloader->startDownload();
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(read(m_path), m_content.mid(1000, 600));
    EXPECT_EQ(downloader->retryCount, 1);
}

TEST_F(FileDownloaderTest, ARedirectIsFollowedWithItsRange)
{
    serve(QStringLiteral("/other.bin"), m_content);
    fault("redirect:path=/image.bin,to=/other.bin");
    const auto downloader = make(1000, 3000);
    downloader->startDownload();
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(read(m_path), m_content.mid(1000, 2000));
}

TEST_F(FileDownloaderTest, CompressionIsRefused)
{
    const auto downloader = make(1000, 3000);
    downloader->startDownload();
    ASSERT_TRUE(waitFor(*downloader, 1));
    EXPECT_EQ(server().requests().first().header("Accept-Encoding"), "identity");
}

TEST_F(FileDownloaderTest, TheReadBufferIsBounded)
{
    const auto downloader = make(0, 0);
    downloader->startDownload();
    EXPECT_EQ(replyOf(*downloader)->readBufferSize(), 1024 * 1024);
}

TEST_F(FileDownloaderTest, ProgressCountsFromTheResumeOffset)
{
    write(m_path, m_content.mid(1000, 500));
    fault("stall-after:bytes=100");
    const auto downloader = make(1000, 3000);
    downloader->startDownload();
    EXPECT_EQ(downloader->CurrentPackDownloadSize, 500);
    ASSERT_TRUE(processEventsUntil([&] { return QFileInfo(m_path).size() == 600; }));
    // Qt counts the bytes that it has received, but only bytes on disk count here.
    downloader->onDownloadProgress(250, 1500);
    EXPECT_EQ(downloader->CurrentPackDownloadSize, 600);
}

TEST_F(FileDownloaderTest, WithoutNetworkAccessItKeepsNoOtherObject)
{
    const auto downloader = make(1000, 3000);
    downloader->startDownload();
    ASSERT_TRUE(processEventsUntil([&] { return downloader->state == FileDownloader::Finished; }));
    EXPECT_FALSE(downloader->children().isEmpty());
    downloader->dropNetwork();
    EXPECT_TRUE(downloader->children().isEmpty()) << "owners keep it for as long as they live";
}

TEST_F(FileDownloaderTest, WithoutNetworkAccessStartingDoesNothing)
{
    const auto downloader = make(1000, 3000);
    downloader->startDownload();
    downloader->dropNetwork();
    EXPECT_EQ(downloader->findChild<QNetworkAccessManager *>(), nullptr);
    downloader->startDownload();
    pumpFor(50);
    EXPECT_FALSE(QFile::exists(m_path));
    EXPECT_EQ(downloader->state, 0);
}

} // namespace
