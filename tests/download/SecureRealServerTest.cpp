#include "download/FileDownloaderHTTP.h"
#include "download/HttpAnswer.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/download/SegmentedTest.h"

#include <QDir>
#include <QNetworkAccessManager>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslError>

namespace {

/// Downloads over the platform's TLS from the web server that with-secure-server.sh has started.
class SecureRealServerTest : public SegmentedTest
{
protected:
    enum Server { Trusted, Expired, WrongHost, SelfSigned };

    void SetUp() override
    {
        ASSERT_GT(qEnvironmentVariableIntValue("QUILLMARSH_SECURE_PORT"), 0)
            << "Run this below with-secure-server.sh.";
        m_content = read(m_folder.filePath(QStringLiteral("served/image.bin")));
        ASSERT_EQ(m_content.size(), 1000007);
        // The log only says that the handshake has failed.
        const auto *manager = m_downloader.findChild<QNetworkAccessManager *>();
        ASSERT_NE(manager, nullptr);
        QObject::connect(manager, &QNetworkAccessManager::sslErrors, &m_downloader,
                         [this](QNetworkReply *, const QList<QSslError> &problems) {
                             for (const QSslError &problem : problems) {
                                 m_reasons.append(problem.error());
                                 m_reasonTexts.append(problem.errorString());
                             }
                         });
    }
    void TearDown() override { QSslConfiguration::setDefaultConfiguration(m_before); }

    void trustTheAuthority()
    {
        const QList<QSslCertificate> authority =
            QSslCertificate::fromPath(m_folder.filePath(QStringLiteral("authority.crt")));
        ASSERT_EQ(authority.size(), 1);
        QSslConfiguration trusting = m_before;
        trusting.setCaCertificates(authority);
        QSslConfiguration::setDefaultConfiguration(trusting);
    }
    static QString url(Server server)
    {
        return QStringLiteral("https://localhost:%1/image.bin")
            .arg(qEnvironmentVariableIntValue("QUILLMARSH_SECURE_PORT") + server);
    }
    bool fetch(Server server)
    {
        emit m_downloader.sigDownloadFile(url(server), m_path);
        return processEventsUntil([this] { return m_downloader.succeeded || !errors().isEmpty(); }) &&
               m_downloader.succeeded;
    }
    QStringList errors() const
    {
        return m_reporter.logLines().filter(QStringLiteral("Download finished with error:"));
    }
    /// Returns the number of the server's answers with this status.
    int answers(int status) const
    {
        const QString log = QString::fromUtf8(read(m_folder.filePath(QStringLiteral("access.log"))));
        return log.count(QStringLiteral(" HTTP/1.1\" %1 ").arg(status));
    }
    void expectNothingAskedOrStored(const QString &path) const
    {
        EXPECT_EQ(read(m_folder.filePath(QStringLiteral("access.log"))), QByteArray());
        EXPECT_FALSE(QFile::exists(path));
        EXPECT_TRUE(arePartsGone());
    }
    /// Expects that the server is refused for these reasons only, and before any request.
    void expectRefused(Server server, const QList<QSslError::SslError> &reasons)
    {
        EXPECT_FALSE(fetch(server));
        EXPECT_EQ(errors(), QStringList(QStringLiteral("Download finished with error:SSL handshake failed")));
        ASSERT_EQ(m_reasons.size(), 1) << qPrintable(m_reasonTexts.join(QLatin1Char('\n')));
        EXPECT_TRUE(reasons.contains(m_reasons.first())) << qPrintable(m_reasonTexts.first());
        expectNothingAskedOrStored(m_path);
    }
    QString log() const { return m_reporter.logLines().join(QLatin1Char('\n')); }

    const QDir m_folder{qEnvironmentVariable("QUILLMARSH_SECURE_FOLDER")};
    const QString m_path = local("dev.jn");
    FileDownloaderHTTP m_downloader{nullptr, &m_reporter};
    QList<QSslError::SslError> m_reasons;
    QStringList m_reasonTexts;

private:
    const QSslConfiguration m_before = QSslConfiguration::defaultConfiguration();
};

TEST_F(SecureRealServerTest, AFileOfATrustedServerArrivesWhole)
{
    trustTheAuthority();
    EXPECT_TRUE(fetch(Trusted)) << qPrintable(log());
    EXPECT_TRUE(read(m_path) == m_content);
    EXPECT_EQ(answers(200), 1);
}

TEST_F(SecureRealServerTest, TenRangesOfATrustedServerArriveWhole)
{
    trustTheAuthority();
    m_worker.url = url(Trusted);
    EXPECT_TRUE(run()) << qPrintable(log());
    EXPECT_TRUE(result() == m_content);
    EXPECT_TRUE(arePartsGone());
    EXPECT_EQ(answers(206), 10);
}

TEST_F(SecureRealServerTest, TenRangesThatAreLargerThanTheReadBufferArriveWhole)
{
    trustTheAuthority();
    m_content = someBytes(21 * 1024 * 1024 + 7);
    ASSERT_GT(m_content.size() / 10, 2 * HttpAnswer::readBufferSize);
    write(m_folder.filePath(QStringLiteral("served/large.bin")), m_content);
    m_worker.url = url(Trusted).replace(QStringLiteral("image.bin"), QStringLiteral("large.bin"));
    EXPECT_TRUE(run()) << qPrintable(log());
    EXPECT_TRUE(result() == m_content);
    EXPECT_EQ(answers(206), 10) << "no request was repeated";
}

TEST_F(SecureRealServerTest, ASelfSignedCertificateIsRefused)
{
    trustTheAuthority();
    // Windows reports an authority that is not trusted.
    expectRefused(SelfSigned, {QSslError::SelfSignedCertificate, QSslError::CertificateUntrusted});
}

TEST_F(SecureRealServerTest, ACertificateOfAnotherHostIsRefused)
{
    trustTheAuthority();
    expectRefused(WrongHost, {QSslError::HostNameMismatch});
}

TEST_F(SecureRealServerTest, AnExpiredCertificateIsRefused)
{
    trustTheAuthority();
    expectRefused(Expired, {QSslError::CertificateExpired});
}

TEST_F(SecureRealServerTest, ACertificateOfAnAuthorityThatIsNotTrustedIsRefused)
{
    expectRefused(Trusted, {QSslError::SelfSignedCertificateInChain, QSslError::CertificateUntrusted});
}

TEST_F(SecureRealServerTest, NoRangeIsFetchedFromAServerThatIsNotTrusted)
{
    m_worker.url = url(Trusted);
    const RecordedDebugStream messages;
    const auto refusals = [&messages] {
        return messages.lines().filter(QStringLiteral("Error fetching file size: SSL handshake failed"));
    };
    // Shortens the wait for the server, but only after it has been refused.
    m_clock.onSleep = [this, refusals] {
        m_clock.sleepsCount = !refusals().isEmpty();
    };
    EXPECT_FALSE(run());
    EXPECT_FALSE(refusals().isEmpty()) << qPrintable(messages.lines().join(QLatin1Char('\n')));
    EXPECT_TRUE(m_reporter.logLines().contains(QStringLiteral("wait server return timeout!")))
        << qPrintable(log());
    expectNothingAskedOrStored(m_worker.savePath);
}

} // namespace
