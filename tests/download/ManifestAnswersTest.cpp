#include "download/FileDownloaderHTTP.h"
#include "download/HttpAnswer.h"
#include "simulator/server/AnswerServer.h"
#include "tests/common/RecordingReporter.h"
#include "tests/download/DownloadTest.h"

namespace {

/// The plain downloader with wrong answers.
class ManifestAnswersTest : public DownloadTest
{
protected:
    void fetch(const QUrl &url)
    {
        m_downloader.succeeded = false;
        emit m_downloader.sigDownloadFile(url.toString(), m_path);
        ASSERT_TRUE(processEventsUntil([this] { return m_downloader.succeeded || !problem().isEmpty(); }));
    }
    void fetch(const QByteArray &answer)
    {
        m_server.setAnswers({{answer}});
        fetch(m_server.url());
    }
    /// Returns the text after "Download finished with error:" in the last line.
    QString problem() const
    {
        const QString beginning = QStringLiteral("Download finished with error:");
        const QString last = m_reporter.logLines().value(m_reporter.logLines().size() - 1);
        return last.startsWith(beginning) ? last.mid(beginning.size()) : QString();
    }
    void expectRefused(const QByteArray &answer, const char *reason)
    {
        fetch(answer);
        EXPECT_FALSE(m_downloader.succeeded);
        EXPECT_EQ(problem(), QString::fromUtf8(reason));
        EXPECT_FALSE(QFile::exists(m_path));
    }

    const QByteArray m_content = someBytes(2000);
    const QString m_path = local("dev.jn");
    AnswerServer m_server;
    RecordingReporter m_reporter;
    FileDownloaderHTTP m_downloader{nullptr, &m_reporter};
};

TEST_F(ManifestAnswersTest, CompressionIsRefused)
{
    fetch(serve(QStringLiteral("/manifest.json"), m_content));
    EXPECT_TRUE(m_downloader.succeeded);
    EXPECT_EQ(server().requests().first().header("Accept-Encoding"), "identity");
}

TEST_F(ManifestAnswersTest, ACompressedManifestIsNoSuccessWhetherCompleteOrTruncated)
{
    const QByteArray whole = QByteArray::fromHex("1f8b08000000000002ffabae05000000ffff0300439fbf0c");
    const QByteArray head =
        "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: " + QByteArray::number(whole.size()) +
        "\r\n\r\n";
    expectRefused(head + whole, "the server compressed what it sent");
    fetch(head + whole.left(whole.size() / 2));
    EXPECT_FALSE(m_downloader.succeeded);
    EXPECT_FALSE(QFile::exists(m_path));
}

TEST_F(ManifestAnswersTest, AStatusThatIsNeitherErrorNorSuccessIsNoSuccess)
{
    expectRefused("HTTP/1.1 300 Multiple Choices\r\n\r\n" + m_content, "the server answered with status 300");
    expectRefused("HTTP/1.1 304 Not Modified\r\n\r\n", "the server answered with status 304");
    expectRefused("HTTP/1.1 399 Nonsense\r\n\r\n" + m_content, "the server answered with status 399");
}

TEST_F(ManifestAnswersTest, APartIsNoSuccess)
{
    expectRefused("HTTP/1.1 206 Partial Content\r\nContent-Range: bytes 0-1999/5000\r\n"
                  "Content-Length: 2000\r\n\r\n" +
                      m_content,
                  "the server sent a part of the file only");
}

TEST_F(ManifestAnswersTest, AChunkedBodyIsCompleteWhateverItsContentLength)
{
    for (const char *length : {"1", "2000", "5000", "9223372036854775807"}) {
        fetch("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nContent-Length: " + QByteArray(length) +
              "\r\n\r\n7d0\r\n" + m_content + "\r\n0\r\n\r\n");
        EXPECT_TRUE(m_downloader.succeeded) << length;
        EXPECT_EQ(read(m_path), m_content) << length;
    }
}

TEST_F(ManifestAnswersTest, TheLargestManifestHas16Mebibytes)
{
    QByteArray content(static_cast<int>(HttpAnswer::manifestLimit), 'x');
    const QUrl url = serve(QStringLiteral("/manifest.json"), content);
    fetch(url);
    EXPECT_TRUE(m_downloader.succeeded);
    EXPECT_EQ(QFileInfo(m_path).size(), 16 * 1024 * 1024);
    serve(QStringLiteral("/manifest.json"), content + 'x');
    fetch(url);
    EXPECT_FALSE(m_downloader.succeeded);
    EXPECT_EQ(problem(), QStringLiteral("the file is larger than 16 MiB"));
    EXPECT_FALSE(QFile::exists(m_path));
}

TEST_F(ManifestAnswersTest, NoMoreThanTheLargestManifestIsHeldInMemory)
{
    m_server.setAnswers({{"HTTP/1.1 200 OK\r\n\r\n", false}});
    emit m_downloader.sigDownloadFile(m_server.url().toString(), m_path);
    const auto *reply = m_downloader.findChild<QNetworkReply *>();
    ASSERT_NE(reply, nullptr);
    EXPECT_EQ(reply->readBufferSize(), HttpAnswer::manifestLimit + 1);
}

TEST_F(ManifestAnswersTest, ARedirectTargetThatDoesNotAnswerIsWaitedForUntilTheCallerGivesUp)
{
    m_server.setAnswers(
        {{"HTTP/1.1 302 Found\r\nLocation: /elsewhere\r\nContent-Length: 0\r\n\r\n"}, {"", false}});
    emit m_downloader.sigDownloadFile(m_server.url().toString(), m_path);
    ASSERT_TRUE(processEventsUntil([this] { return m_server.requests() == 2; }));
    m_downloader.abandonDownload();
    ASSERT_TRUE(processEventsUntil([this] { return !QFile::exists(m_path); }));
    EXPECT_FALSE(m_downloader.succeeded);
    EXPECT_EQ(m_downloader.findChild<QNetworkReply *>(), nullptr);
}

} // namespace
