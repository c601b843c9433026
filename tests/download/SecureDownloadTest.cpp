#include "download/FileDownloaderHTTP.h"
#include "tests/common/RecordingReporter.h"
#include "tests/download/DownloadTest.h"
#include "tests/download/SecureServer.h"

#include <QSslConfiguration>

namespace {

class SecureDownloadTest : public DownloadTest
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_secure.hasCertificate());
        ASSERT_TRUE(m_secure.listen(QHostAddress::LocalHost));
    }
    void TearDown() override { QSslConfiguration::setDefaultConfiguration(m_before); }

    void trustTheServer()
    {
        QSslConfiguration trusting = m_before;
        trusting.setCaCertificates({m_secure.certificate()});
        QSslConfiguration::setDefaultConfiguration(trusting);
    }
    bool fetch()
    {
        emit m_downloader.sigDownloadFile(m_secure.url(), m_path);
        return processEventsUntil([this] {
                   return m_downloader.succeeded || !m_reporter.logLines().filter(m_failure).isEmpty();
               }) &&
               m_downloader.succeeded;
    }

    const QByteArray m_content = someBytes(200000);
    const QString m_path = local("dev.jn");
    const QString m_failure = QStringLiteral("Download finished with error:");
    SecureServer m_secure{m_content};
    RecordingReporter m_reporter;
    FileDownloaderHTTP m_downloader{nullptr, &m_reporter};

private:
    const QSslConfiguration m_before = QSslConfiguration::defaultConfiguration();
};

TEST(SecureTransportTest, ThePlatformSupportsTls)
{
    EXPECT_TRUE(QSslSocket::supportsSsl());
    EXPECT_FALSE(QSslSocket::sslLibraryVersionString().isEmpty());
}

TEST_F(SecureDownloadTest, AFileOfATrustedServerArrivesWhole)
{
    trustTheServer();
    EXPECT_TRUE(fetch()) << qPrintable(m_reporter.logLines().join(QLatin1Char('\n')))
                         << qPrintable(m_secure.problem());
    EXPECT_EQ(read(m_path), m_content);
}

TEST_F(SecureDownloadTest, AnUntrustedServerGetsNoRequest)
{
    EXPECT_FALSE(fetch());
    EXPECT_EQ(m_reporter.logLines().filter(m_failure).size(), 1);
    EXPECT_EQ(m_secure.requests(), 0);
    EXPECT_FALSE(QFile::exists(m_path));
}

} // namespace
