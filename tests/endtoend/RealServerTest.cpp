#include "harness/server/NginxServer.h"
#include "tests/endtoend/EndToEnd.h"
#include "tests/endtoend/OwnMounts.h"

#include <QDir>
#include <QFileInfo>

namespace {

using namespace EndToEnd;

constexpr quint16 plainPort = 18180;
const QString systemCertificates = QStringLiteral("/etc/ssl/certs");

/// Images from a real web server.
class RealServerTest : public EndToEndTest
{
protected:
    void SetUp() override
    {
        UpdateScenario &s = scenario();
        ASSERT_TRUE(m_nginx.startWithTls(s.firmware.folder(), plainPort))
            << m_nginx.errorText().toStdString();
    }
    /// Makes the manifest contain this address of the web server for the image.
    void setImageUrl(const QString &server, const QString &prefix = QString())
    {
        UpdateScenario &s = scenario();
        const QString path = s.firmware.imageFile(s.model()).mid(s.firmware.folder().size());
        s.firmware.setField(s.model(), QStringLiteral("fileURL"), server + prefix + path);
    }
    static QString https(int port) { return QStringLiteral("https://localhost:%1").arg(port); }
    /// Makes the system trust the certificate authority of this test only.
    bool trustTheAuthority() const
    {
        if (!OwnMounts::inMemory(systemCertificates, 256))
            return false;
        const QFileInfoList files = QDir(m_nginx.authorityFolder()).entryInfoList(QDir::Files | QDir::System);
        for (const QFileInfo &file : files) {
            const QString name = systemCertificates + QLatin1Char('/') + file.fileName();
            if (!(file.isSymLink() ? QFile::link(QStringLiteral("authority.pem"), name)
                                   : QFile::copy(file.filePath(), name)))
                return false;
        }
        return files.size() == 2;
    }
    int answers(int status) const
    {
        return m_nginx.requests().filter(QStringLiteral(" HTTP/1.1\" %1 ").arg(status)).size();
    }
    void expectBurnedInTenParts()
    {
        EXPECT_EQ(update(), upgradeSuccessful);
        EXPECT_TRUE(scenario().burned() == scenario().image());
        EXPECT_EQ(answers(206), 10) << m_nginx.requests().join(QLatin1Char('\n')).toStdString();
    }
    void expectRefused()
    {
        UpdateScenario &s = scenario();
        EXPECT_EQ(update(), md5Failed);
        EXPECT_TRUE(logHas("wait server return timeout!"));
        EXPECT_TRUE(s.bus.device(s.model()).value(QLatin1String("reports")).toArray().isEmpty());
        EXPECT_TRUE(s.program.runs(usbFlasher).isEmpty());
        EXPECT_EQ(answers(206), 0);
        EXPECT_EQ(answers(200), 0);
    }

    NginxServer m_nginx;
};

TEST_F(RealServerTest, AnImageIsFetchedInTenRangesOverHttp)
{
    setImageUrl(QStringLiteral("http://127.0.0.1:%1").arg(plainPort));
    expectBurnedInTenParts();
}

TEST_F(RealServerTest, AnImageIsFetchedInTenRangesOverHttpsFromATrustedServer)
{
    ASSERT_TRUE(trustTheAuthority());
    setImageUrl(https(NginxServer::trustedPort));
    expectBurnedInTenParts();
}

TEST_F(RealServerTest, ASelfSignedCertificateIsRefused)
{
    ASSERT_TRUE(trustTheAuthority());
    setImageUrl(https(NginxServer::selfSignedPort));
    expectRefused();
}

TEST_F(RealServerTest, ACertificateOfAnotherHostIsRefused)
{
    ASSERT_TRUE(trustTheAuthority());
    setImageUrl(https(NginxServer::wrongHostPort));
    expectRefused();
}

TEST_F(RealServerTest, AnExpiredCertificateIsRefused)
{
    ASSERT_TRUE(trustTheAuthority());
    setImageUrl(https(NginxServer::expiredPort));
    expectRefused();
}

TEST_F(RealServerTest, ACertificateOfAnAuthorityThatIsNotTrustedIsRefused)
{
    setImageUrl(https(NginxServer::trustedPort));
    expectRefused();
}

TEST_F(RealServerTest, ARedirectFromATrustedServerToAnUntrustedOneIsRefused)
{
    ASSERT_TRUE(trustTheAuthority());
    setImageUrl(https(NginxServer::trustedPort), QStringLiteral("/to-self-signed"));
    expectRefused();
    EXPECT_GT(answers(302), 0);
}

TEST_F(RealServerTest, ARedirectFromHttpsToHttpIsRefused)
{
    ASSERT_TRUE(trustTheAuthority());
    setImageUrl(https(NginxServer::trustedPort), QStringLiteral("/to-plain"));
    expectRefused();
    EXPECT_GT(answers(302), 0);
}

} // namespace
