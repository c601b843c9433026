#include "download/FileSizeFetcher.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/download/DownloadTest.h"

#include <QElapsedTimer>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <algorithm>

namespace {

class FileSizeFetcherTest : public DownloadTest
{
protected:
    FileSizeFetcherTest() : m_url(serve(QStringLiteral("/image.bin"), someBytes(5000))) {}

    QUrl m_url;
    RecordedDebugStream m_messages;

    bool waitForText(const char *beginning)
    {
        return processEventsUntil([&] { return m_messages.countBeginning(QString::fromUtf8(beginning)) > 0; },
                                  4 * eventLimitMs);
    }
};

TEST_F(FileSizeFetcherTest, TheSlotsAreDeclaredInOrderAndThereAreNoOthers)
{
    EXPECT_EQ(entriesOf(FileSizeFetcher::staticMetaObject),
              (std::vector<std::string>{"slot onMetaDataChanged()", "slot onFinished(QNetworkReply*)"}));
}

TEST_F(FileSizeFetcherTest, TheSizeComesFromTheHeadersOfAGetRequest)
{
    FileSizeFetcher probe(m_url);
    EXPECT_EQ(probe.fileSize, 0);
    EXPECT_EQ(probe.maxRetries, 999);
    probe.fetchFileSize();
    ASSERT_TRUE(waitForText("Request completed."));
    EXPECT_EQ(probe.fileSize, 5000);
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("File size: 5000 bytes")), 1);
    EXPECT_EQ(rangesAsked(), QList<QByteArray>{QByteArray()});
    EXPECT_EQ(server().requests().first().header("Accept-Encoding"), "identity");
}

TEST_F(FileSizeFetcherTest, IfThereAreBothHeadersContentLengthCounts)
{
    fault("header:name=Content-Range,value=bytes 0-4999/77777");
    FileSizeFetcher probe(m_url);
    probe.fetchFileSize();
    ASSERT_TRUE(waitForText("Request completed."));
    EXPECT_EQ(probe.fileSize, 5000);
}

TEST_F(FileSizeFetcherTest, WithoutAContentLengthTheTotalOfContentRangeCounts)
{
    fault("no-length");
    fault("header:name=Content-Range,value=bytes 0-99/5000");
    FileSizeFetcher probe(m_url);
    probe.fetchFileSize();
    ASSERT_TRUE(waitForText("Request completed."));
    EXPECT_EQ(probe.fileSize, 5000);
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("File size: 5000 bytes")), 1);
}

TEST_F(FileSizeFetcherTest, AContentRangeWithoutASlashCausesACriticalLineAndDoesNotChangeTheSize)
{
    fault("no-length");
    fault("header:name=Content-Range,value=bytes 0-99");
    FileSizeFetcher probe(m_url);
    probe.fileSize = 77;
    probe.fetchFileSize();
    ASSERT_TRUE(waitForText("Request completed."));
    EXPECT_EQ(probe.fileSize, 77) << "the known size is kept";
    EXPECT_EQ(m_messages.lines(QtCriticalMsg),
              QStringList{QStringLiteral("Could not determine file size from Content-Range header.")});
}

TEST_F(FileSizeFetcherTest, WithNeitherHeaderTheSizeStaysZero)
{
    fault("chunked");
    FileSizeFetcher probe(m_url);
    probe.fetchFileSize();
    ASSERT_TRUE(waitForText("Request completed."));
    EXPECT_EQ(probe.fileSize, 0);
}

TEST_F(FileSizeFetcherTest, AFailedRequestIsRepeatedAtOnce)
{
    fault("503:times=50");
    FileSizeFetcher probe(m_url);
    auto *manager = probe.findChild<QNetworkAccessManager *>();
    ASSERT_NE(manager, nullptr);
    int repeated = 0;
    // Called after the probe's own slot for the same signal.
    QObject::connect(manager, &QNetworkAccessManager::finished, manager, [&](const QNetworkReply *ended) {
        const QList<QNetworkReply *> replies = manager->findChildren<QNetworkReply *>();
        repeated += std::any_of(replies.begin(), replies.end(), [&](const QNetworkReply *reply) {
            return reply != ended && reply->isRunning();
        });
    });
    probe.fetchFileSize();
    ASSERT_TRUE(waitForText("Request completed."));
    EXPECT_EQ(repeated, 50) << "when the answer has been handled, the next request is on its way";
    EXPECT_EQ(probe.fileSize, 5000) << "the size of an error page is not the file's";
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("Error fetching file size:")), 50);
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("Retrying... Attempt 50 of 999")), 1);
    EXPECT_EQ(probe.retryCount, 0) << "a success resets the count";
}

TEST_F(FileSizeFetcherTest, After999RetriesItGivesUp)
{
    fault("404");
    FileSizeFetcher probe(m_url);
    probe.fetchFileSize();
    ASSERT_TRUE(waitForText("Max retries reached. Giving up."));
    pumpFor(20);
    EXPECT_EQ(server().requests().size(), 1000);
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("Retrying... Attempt 999 of 999")), 1);
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("Max retries reached. Giving up.")), 1);
    EXPECT_EQ(probe.fileSize, 0);
}

TEST_F(FileSizeFetcherTest, TheSizeOfARedirectIsIgnored)
{
    serve(QStringLiteral("/other.bin"), someBytes(7000));
    fault("redirect:path=/image.bin,to=/other.bin");
    fault("slow-drip:path=/other.bin,bytes=100,ms=1");
    FileSizeFetcher probe(m_url);
    probe.fetchFileSize();
    ASSERT_TRUE(processEventsUntil([&] { return probe.fileSize != 0; }));
    EXPECT_EQ(probe.fileSize, 7000);
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("File size:")), 1);
}

TEST_F(FileSizeFetcherTest, TheBodyIsReadAtNoMoreThan16KibibytesASecond)
{
    const QUrl url = serve(QStringLiteral("/large.bin"), someBytes(1024 * 1024));
    FileSizeFetcher probe(url);
    QElapsedTimer timer;
    timer.start();
    probe.fetchFileSize();
    auto *reply = probe.findChild<QNetworkReply *>();
    ASSERT_NE(reply, nullptr);
    EXPECT_EQ(reply->readBufferSize(), 16 * 1024);
    qint64 received = 0;
    double mostPerLimit = 0;
    QObject::connect(reply, &QNetworkReply::downloadProgress, [&](qint64 bytes) {
        received = bytes;
        // The bytes that fit into the read buffer arrive at once.
        const double seconds = double(timer.elapsed()) / 1000;
        mostPerLimit = std::max(mostPerLimit, double(bytes) / (16 * 1024 * (1 + seconds)));
    });
    ASSERT_TRUE(processEventsUntil([&] { return received >= 48 * 1024; })) << "the body continues to arrive";
    EXPECT_LE(mostPerLimit, 1);
    EXPECT_EQ(probe.fileSize, 1024 * 1024);
    EXPECT_EQ(server().openConnections(), 1);
    EXPECT_EQ(server().requests().size(), 1);
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("Request completed.")), 0);
}

TEST_F(FileSizeFetcherTest, TheBodyIsReadToItsEndAndDiscarded)
{
    const QUrl url = serve(QStringLiteral("/large.bin"), someBytes(5 * 1024 * 1024));
    FileSizeFetcher probe(url);
    probe.bodyBytesPerSecond = 100 * 1024 * 1024;
    probe.fetchFileSize();
    auto *reply = probe.findChild<QNetworkReply *>();
    ASSERT_NE(reply, nullptr);
    qint64 received = 0;
    qint64 held = 0;
    QObject::connect(reply, &QNetworkReply::downloadProgress, [&](qint64 bytes) {
        received = bytes;
        held = std::max(held, reply->bytesAvailable());
    });
    ASSERT_TRUE(waitForText("Request completed."));
    EXPECT_EQ(received, 5 * 1024 * 1024);
    EXPECT_LE(held, 128 * 1024);
}

TEST_F(FileSizeFetcherTest, WithoutASizeTheBodyIsReadAtFullSpeed)
{
    // Otherwise an error page would delay the next request.
    const QUrl url = serve(QStringLiteral("/large.bin"), someBytes(20 * 1024 * 1024));
    fault("chunked");
    FileSizeFetcher probe(url);
    probe.bodyBytesPerSecond = 1;
    probe.fetchFileSize();
    ASSERT_TRUE(waitForText("Request completed."));
    EXPECT_EQ(probe.fileSize, 0);
}

TEST_F(FileSizeFetcherTest, TheSizeIsKnownBeforeTheBodyHasArrived)
{
    fault("stall-after:bytes=1");
    FileSizeFetcher probe(m_url);
    probe.fetchFileSize();
    ASSERT_TRUE(processEventsUntil([&] { return probe.fileSize == 5000; }));
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("Request completed.")), 0);
}

} // namespace
