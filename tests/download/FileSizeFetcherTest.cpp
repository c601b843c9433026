#include "download/FileSizeFetcher.h"
#include "tests/download/DownloadTest.h"
#include "tests/support/RecordedDebugStream.h"

namespace {

class FileSizeFetcherTest : public DownloadTest
{
protected:
    FileSizeFetcherTest() : m_url(serve(QStringLiteral("/image.bin"), someBytes(5000))) {}

    QUrl m_url;
    RecordedDebugStream m_messages;

    bool waitForText(const char *beginning, int limitMs = 20000)
    {
        return pumpUntil([&] { return m_messages.countBeginning(QString::fromUtf8(beginning)) > 0; },
                         limitMs);
    }
};

TEST_F(FileSizeFetcherTest, TheSlotsStandInTheirOrderAndNothingElse)
{
    EXPECT_EQ(entriesOf(FileSizeFetcher::staticMetaObject),
              (std::vector<std::string>{"slot onMetaDataChanged()", "slot onFinished(QNetworkReply*)"}));
}

TEST_F(FileSizeFetcherTest, TheSizeComesFromTheHeadOfAnOrdinaryGet)
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

TEST_F(FileSizeFetcherTest, OfBothHeadersContentLengthCounts)
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

TEST_F(FileSizeFetcherTest, AContentRangeWithoutASlashGivesTheCriticalLineAndNoSize)
{
    fault("no-length");
    fault("header:name=Content-Range,value=bytes 0-99");
    FileSizeFetcher probe(m_url);
    probe.fetchFileSize();
    ASSERT_TRUE(waitForText("Request completed."));
    EXPECT_EQ(probe.fileSize, 0);
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
    QElapsedTimer timer;
    timer.start();
    probe.fetchFileSize();
    ASSERT_TRUE(waitForText("Request completed."));
    EXPECT_LT(timer.elapsed(), 15000) << "50 retries without a delay";
    EXPECT_EQ(probe.fileSize, 5000) << "the size of an error page is not the file's";
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("Error fetching file size:")), 50);
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("Retrying... Attempt 50 of 999")), 1);
    EXPECT_EQ(probe.retryCount, 0) << "a success starts the count again";
}

TEST_F(FileSizeFetcherTest, After999RetriesItGivesUp)
{
    fault("404");
    FileSizeFetcher probe(m_url);
    probe.fetchFileSize();
    ASSERT_TRUE(waitForText("Max retries reached. Giving up.", 100000));
    pumpFor(20);
    EXPECT_EQ(server().requests().size(), 1000);
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("Retrying... Attempt 999 of 999")), 1);
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("Max retries reached. Giving up.")), 1);
    EXPECT_EQ(probe.fileSize, 0);
}

TEST_F(FileSizeFetcherTest, TheSizeOfARedirectIsNotTakenForTheFiles)
{
    serve(QStringLiteral("/other.bin"), someBytes(7000));
    fault("redirect:path=/image.bin,to=/other.bin");
    fault("slow-drip:path=/other.bin,bytes=100,ms=1");
    FileSizeFetcher probe(m_url);
    probe.fetchFileSize();
    ASSERT_TRUE(pumpUntil([&] { return probe.fileSize != 0; }));
    EXPECT_EQ(probe.fileSize, 7000);
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("File size:")), 1);
}

TEST_F(FileSizeFetcherTest, TheBodyIsFetchedToItsEndAndDropped)
{
    const QUrl url = serve(QStringLiteral("/large.bin"), someBytes(5 * 1024 * 1024));
    FileSizeFetcher probe(url);
    probe.fetchFileSize();
    auto *reply = probe.findChild<QNetworkReply *>();
    ASSERT_NE(reply, nullptr);
    EXPECT_EQ(reply->readBufferSize(), 1024 * 1024);
    qint64 received = 0;
    qint64 held = 0;
    QObject::connect(reply, &QNetworkReply::downloadProgress, [&](qint64 bytes) {
        received = bytes;
        held = std::max(held, reply->bytesAvailable());
    });
    ASSERT_TRUE(waitForText("Request completed."));
    EXPECT_EQ(received, 5 * 1024 * 1024);
    EXPECT_LE(held, 1024 * 1024);
}

TEST_F(FileSizeFetcherTest, TheSizeIsKnownBeforeTheBodyHasArrived)
{
    fault("stall-after:bytes=1");
    FileSizeFetcher probe(m_url);
    probe.fetchFileSize();
    ASSERT_TRUE(pumpUntil([&] { return probe.fileSize == 5000; }));
    EXPECT_EQ(m_messages.countBeginning(QStringLiteral("Request completed.")), 0);
}

} // namespace
