#include "download/FileDownloader.h"
#include "simulator/server/AnswerServer.h"
#include "tests/common/AnotherAttempt.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/download/DownloadTest.h"

namespace {

/// Wrong answers to the request for bytes 1000 to 2999.
class LyingServerTest : public DownloadTest
{
protected:
    /// Downloads the range from a server that gives these answers and repeats the last one.
    void download(const QList<AnswerServer::Answer> &answers)
    {
        m_lying.setAnswers(answers);
        m_downloader.startByte = 1000;
        m_downloader.endByte = 3000;
        m_downloader.retryDelay = 5;
        m_downloader.maxRetries = 2;
        m_downloader.startDownload();
        ASSERT_TRUE(processEventsUntil(
            [this] { return m_downloader.hasGivenUp() || m_downloader.state == FileDownloader::Finished; }));
    }
    /// Gives a wrong answer and then a correct one. Expects one retry, and nothing of the wrong answer in the
    /// file.
    void expectOneRetry(const QByteArray &lie)
    {
        download({{lie}, {m_truth}});
        EXPECT_EQ(m_downloader.state, 1);
        EXPECT_EQ(m_downloader.retryCount, 1);
        EXPECT_EQ(read(m_path), m_part);
        EXPECT_EQ(m_downloader.CurrentPackDownloadSize, m_part.size());
    }
    /// Gives only wrong answers. Expects that the part gives up with a reason and has no file.
    void expectGivenUp(const QByteArray &lie, const char *reason)
    {
        download({{lie}});
        EXPECT_TRUE(m_downloader.hasGivenUp());
        EXPECT_EQ(m_downloader.state, -1);
        EXPECT_EQ(m_downloader.lastProblem(), QString::fromUtf8(reason));
        EXPECT_FALSE(QFile::exists(m_path));
        EXPECT_EQ(m_downloader.CurrentPackDownloadSize, 0);
    }
    static QByteArray answer(const QByteArray &status, const QByteArray &headers, const QByteArray &body)
    {
        return "HTTP/1.1 " + status + "\r\n" + headers +
               "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    }

    const QByteArray m_part = someBytes(2000);
    const QByteArray m_truth =
        answer("206 Partial Content", "Content-Range: bytes 1000-2999/5000\r\n", m_part);
    const QString m_path = local("part");
    AnswerServer m_lying;
    FileDownloader m_downloader{m_lying.url(), m_path};
};

TEST_F(LyingServerTest, ACorrectAnswerNeedsNoRetry)
{
    download({{m_truth}});
    EXPECT_EQ(m_downloader.state, 1);
    EXPECT_EQ(m_downloader.retryCount, 0);
    EXPECT_EQ(read(m_path), m_part);
}

class LyingPositionTest : public LyingServerTest, public testing::WithParamInterface<const char *>
{
};

TEST_P(LyingPositionTest, APartThatBeginsElsewhereIsAnErrorOfThatPart)
{
    expectOneRetry(answer("206 Partial Content", "Content-Range: bytes " + QByteArray(GetParam()) + "\r\n",
                          someBytes(2001)));
}

INSTANTIATE_TEST_SUITE_P(Positions, LyingPositionTest,
                         testing::Values("0-1999/5000", "999-2998/5000", "1001-3000/5000", "3000-4999/5000",
                                         "9223372036854775807-9223372036854775807/9223372036854775807",
                                         "9223372036854775806-9223372036854775807/*",
                                         "9223372036854775808-9223372036854777808/5000",
                                         "99999999999999999999999999999999999999-3/4"));

TEST_F(LyingServerTest, IfThePositionIsAlwaysWrongTheDownloadGivesUpWithTheReason)
{
    expectGivenUp(answer("206 Partial Content", "Content-Range: bytes 7-2006/5000\r\n", m_part),
                  "the server sent another part of the file");
}

TEST_F(LyingServerTest, SeveralRangesInOneAnswerDoNotReachTheFile)
{
    const QByteArray body =
        "\r\n--x\r\nContent-Range: bytes 1000-2999/5000\r\n\r\n" + m_part + "\r\n--x--\r\n";
    for (const char *type : {"multipart/byteranges; boundary=x", "Multipart/ByteRanges;boundary=x"}) {
        SCOPED_TRACE(type);
        expectOneRetry(answer("206 Partial Content", "Content-Type: " + QByteArray(type) + "\r\n", body));
        QFile::remove(m_path);
        m_downloader.retryCount = 0;
    }
    m_downloader.CurrentPackDownloadSize = 0;
    expectGivenUp(answer("206 Partial Content", "Content-Type: multipart/byteranges; boundary=x\r\n", body),
                  "the server sent several parts in one answer");
}

TEST_F(LyingServerTest, ACompressedBodyDoesNotReachTheFile)
{
    expectOneRetry(answer("206 Partial Content",
                          "Content-Range: bytes 1000-2999/5000\r\nContent-Encoding: gzip\r\n", m_part));
}

TEST_F(LyingServerTest, TheEncodingIdentityIsNoCompression)
{
    download({{answer("206 Partial Content",
                      "Content-Range: bytes 1000-2999/5000\r\nContent-Encoding: Identity\r\n", m_part)}});
    EXPECT_EQ(m_downloader.retryCount, 0);
    EXPECT_EQ(read(m_path), m_part);
}

class LyingStatusTest : public LyingServerTest, public testing::WithParamInterface<const char *>
{
};

TEST_P(LyingStatusTest, AStatusThatIsNeitherErrorNorSuccessIsAnErrorOfThatPart)
{
    const std::string reason = "the server answered with status " + std::string(GetParam()).substr(0, 3);
    const QByteArray head = "HTTP/1.1 " + QByteArray(GetParam()) + "\r\n\r\n";
    for (const QByteArray &body : {QByteArray(), m_part}) {
        m_downloader.retryCount = 0;
        expectOneRetry(head + body);
        QFile::remove(m_path);
    }
    m_downloader.CurrentPackDownloadSize = 0;
    expectGivenUp(head + m_part, reason.c_str());
}

INSTANTIATE_TEST_SUITE_P(Statuses, LyingStatusTest,
                         testing::Values("300 Multiple Choices", "304 Not Modified", "399 Nonsense"));

TEST_F(LyingServerTest, AnEndlessPartIsAbortedWhenItIsComplete)
{
    // A body without a length, which the client must assume to be endless.
    const QByteArray endless = "HTTP/1.1 206 Partial Content\r\nContent-Range: bytes 1000-2999/5000\r\n"
                               "Transfer-Encoding: chunked\r\n\r\n7d1\r\n" +
                               m_part + "x\r\n";
    m_downloader.stallTimeout = 24 * 60 * 60 * 1000;
    download({{endless, false}});
    EXPECT_EQ(m_downloader.state, 1);
    EXPECT_EQ(m_downloader.retryCount, 0);
    EXPECT_EQ(read(m_path), m_part);
}

TEST_F(LyingServerTest, BytesAfterTheEndThatTheAnswerNamesAreIgnored)
{
    download({{answer("206 Partial Content", "Content-Range: bytes 1000-1499/5000\r\n",
                      m_part.left(500) + "not offered")},
              {answer("206 Partial Content", "Content-Range: bytes 1500-2999/5000\r\n", m_part.mid(500))}});
    EXPECT_EQ(m_downloader.state, 1);
    EXPECT_EQ(m_downloader.retryCount, 1);
    EXPECT_EQ(read(m_path), m_part);
}

TEST_F(LyingServerTest, IgnoredBytesDoNotKeepARequestAlive)
{
    // Each piece arrives well within the limit, but none is wanted.
    m_downloader.stallTimeout = 300;
    dependsOnRealTime("the transfer's time-out, shortened to 300 ms");
    download({{"HTTP/1.1 206 Partial Content\r\nContent-Range: bytes 1000-1499/5000\r\n\r\n" +
                   m_part.left(500) + QByteArray(100 * 1000 * 1000, 'x'),
               true, 100},
              {answer("206 Partial Content", "Content-Range: bytes 1500-2999/5000\r\n", m_part.mid(500))}});
    EXPECT_EQ(m_downloader.state, 1);
    EXPECT_EQ(read(m_path), m_part);
    EXPECT_EQ(m_lying.requests(), 2);
}

TEST_F(LyingServerTest, ATransferThatEndsBeforeTheTotalSizeIsRetried)
{
    write(m_path, m_part.left(500));
    m_downloader.retryDelay = 5;
    m_lying.setAnswers(
        {{answer("206 Partial Content", "Content-Range: bytes 500-1499/2000\r\n", m_part.mid(500, 1000))},
         {answer("206 Partial Content", "Content-Range: bytes 1500-1999/2000\r\n", m_part.mid(1500))}});
    m_downloader.startDownload();
    ASSERT_TRUE(processEventsUntil([this] { return m_downloader.state == FileDownloader::Finished; }));
    EXPECT_EQ(read(m_path), m_part);
    EXPECT_EQ(m_lying.requests(), 2);
}

TEST_F(LyingServerTest, APartInAnswerToARequestForTheWholeFileIsAnError)
{
    m_downloader.retryDelay = 5;
    m_lying.setAnswers(
        {{answer("206 Partial Content", "Content-Range: bytes 0-99/2000\r\n", m_part.left(100))},
         {answer("200 OK", "", m_part)}});
    m_downloader.startDownload();
    ASSERT_TRUE(processEventsUntil([this] { return m_downloader.state == FileDownloader::Finished; }));
    EXPECT_EQ(read(m_path), m_part);
    EXPECT_EQ(m_downloader.retryCount, 1);
}

TEST_F(LyingServerTest, OnlyBytesOnDiskAreCounted)
{
    // The file cannot be opened: the bytes that have arrived stay in the reply.
    const RecordedDebugStream messages;
    FileDownloader downloader(m_lying.url(), local("missing/part"));
    downloader.startByte = 1000;
    downloader.endByte = 3000;
    m_lying.setAnswers({{m_truth.left(m_truth.size() - 1), false}});
    downloader.startDownload();
    ASSERT_TRUE(processEventsUntil(
        [&] { return messages.countBeginning(QStringLiteral("Unable to open file for writing:")) > 0; }));
    downloader.onDownloadProgress(1999, 2000);
    EXPECT_EQ(downloader.CurrentPackDownloadSize, 0);
}

TEST_F(LyingServerTest, ARedirectTargetThatDoesNotAnswerIsRequestedAgain)
{
    const AnswerServer::Answer redirect{answer("302 Found", "Location: /elsewhere\r\n", "")};
    for (const QByteArray &mute : {QByteArray(), QByteArray("HTTP/1.1 206 Partial Cont")}) {
        QFile::remove(m_path);
        m_downloader.retryCount = 0;
        m_downloader.stallTimeout = 300;
        dependsOnRealTime("the transfer's time-out, shortened to 300 ms");
        download({redirect, {mute, false}, {m_truth}});
        EXPECT_EQ(m_downloader.state, 1);
        EXPECT_EQ(read(m_path), m_part);
        EXPECT_EQ(m_lying.requests(), 3);
        EXPECT_EQ(m_downloader.retryCount, 1);
    }
}

TEST_F(LyingServerTest, AServerThatDoesNotAnswerIsReportedAsTheReason)
{
    m_downloader.stallTimeout = 50;
    download({{QByteArray(), false}});
    EXPECT_TRUE(m_downloader.hasGivenUp());
    EXPECT_EQ(m_downloader.lastProblem(), QStringLiteral("the server sent nothing for 0.05 s"));
    EXPECT_EQ(m_downloader.retryCount, m_downloader.maxRetries);
}

TEST_F(LyingServerTest, WithoutTlsADownloadGivesUpAtOnceAndSaysWhy)
{
    FileDownloader downloader(m_lying.url(), m_path, nullptr, false);
    downloader.startDownload();
    EXPECT_TRUE(downloader.hasGivenUp());
    EXPECT_EQ(downloader.state, -1);
    EXPECT_EQ(downloader.lastProblem(), QStringLiteral("SSL is not supported!"));
    pumpFor(50);
    EXPECT_EQ(m_lying.requests(), 0);
}

} // namespace
