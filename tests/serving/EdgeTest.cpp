#include "tests/serving/ServingTest.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSet>
#include <QSslCertificate>
#include <QSslConfiguration>

#include <memory>

namespace {

/// The number of clients; larger with QUILLMARSH_LONG_TESTS set.
int manyClients()
{
    return qEnvironmentVariableIsSet("QUILLMARSH_LONG_TESTS") ? 200 : 20;
}

/// Downloads from the caching server, and its requests to the firmware server.
class EdgeTest : public ServingTest
{
protected:
    std::unique_ptr<QNetworkReply> get(const QString &url, const QByteArray &knownTag = {})
    {
        QNetworkRequest request((QUrl(url)));
        QSslConfiguration trust = QSslConfiguration::defaultConfiguration();
        trust.setCaCertificates(QSslCertificate::fromPath(m_sites.authorityFile()));
        request.setSslConfiguration(trust);
        if (!knownTag.isEmpty())
            request.setRawHeader("If-None-Match", knownTag);
        std::unique_ptr<QNetworkReply> reply(m_network.get(request));
        QEventLoop loop;
        QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec();
        return reply;
    }
    QString imageUrl() const
    {
        return EdgeAndOrigin::manifestUrl().section(QLatin1Char('/'), 0, -2) +
               QStringLiteral("/%1-%2.img").arg(m_model, sumOf(m_image));
    }
    static int statusOf(const QNetworkReply &reply)
    {
        return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    }

    QNetworkAccessManager m_network;
};

TEST_F(EdgeTest, ManyClientsDownloadAtOnceAndTheOriginSendsEachByteOnce)
{
    const int count = manyClients();
    QElapsedTimer taken;
    taken.start();
    begin(count);
    expectComplete(count);

    const QVector<ServedRequest> images =
        ServedRequests::ending(m_sites.originRequests(), QStringLiteral(".img"));
    EXPECT_EQ(ServedRequests::bodyBytes(images), m_image.size());
    QSet<QString> ranges;
    for (const ServedRequest &request : images)
        ranges.insert(request.range);
    EXPECT_EQ(ranges.size(), 5); // slices of 1 MiB
    EXPECT_EQ(images.size(), 5);
    const QVector<ServedRequest> manifests =
        ServedRequests::ending(m_sites.originRequests(), QStringLiteral(".json"));
    int whole = 0;
    for (const ServedRequest &request : manifests)
        whole += request.status == 200 ? 1 : 0;
    EXPECT_GE(whole, 1);
    EXPECT_LE(whole, 1 + taken.elapsed() / 60000);
}

TEST_F(EdgeTest, AClientRequestsTheManifestTheSizeAndTenRanges)
{
    begin(1);
    expectComplete(1);
    // The request for the size is logged once nginx has noticed that nobody reads its answer.
    const auto images = [this] {
        return ServedRequests::ending(m_sites.edgeRequests(), QStringLiteral(".img"));
    };
    EXPECT_TRUE(pollUntil([&] { return images().size() == 11; }));
    EXPECT_EQ(ServedRequests::withRange(images(), true), 10);
    EXPECT_EQ(ServedRequests::withRange(images(), false), 1);
    EXPECT_EQ(ServedRequests::ending(m_sites.edgeRequests(), QStringLiteral(".json")).size(), 1);
}

TEST_F(EdgeTest, ImagesAreImmutableAndTheManifestIsShortLived)
{
    begin(0);
    const auto image = get(imageUrl());
    EXPECT_EQ(image->readAll(), m_image);
    EXPECT_EQ(image->rawHeader("Cache-Control"), "public, max-age=31536000, immutable");
    const QByteArray tag = image->rawHeader("ETag");
    EXPECT_FALSE(tag.isEmpty());
    EXPECT_EQ(statusOf(*get(imageUrl(), tag)), 304);
    const auto manifest = get(EdgeAndOrigin::manifestUrl());
    EXPECT_EQ(manifest->rawHeader("Cache-Control"), "public, max-age=60");
    EXPECT_FALSE(manifest->rawHeader("ETag").isEmpty());
}

TEST_F(EdgeTest, AMissingImageIsNotKept)
{
    begin(0);
    const QByteArray other = randomBytes(1000, 3);
    const QString url = imageUrl().replace(sumOf(m_image), sumOf(other));
    EXPECT_EQ(statusOf(*get(url)), 404);
    ASSERT_TRUE(m_sites.addModel(m_model, other));
    EXPECT_EQ(get(url)->readAll(), other);
}

TEST_F(EdgeTest, ANewManifestDuringDownloadsDoesNotDisturbThem)
{
    const QByteArray next = randomBytes(5100003, 2);
    EdgeAndOrigin::Options options;
    options.bytesPerConnection = 200 * 1024;
    options.manifestSeconds = 1;
    begin(10, options);
    waitForBytes();
    const QDateTime written = QFileInfo(m_sites.manifestFile()).lastModified();
    ASSERT_TRUE(m_sites.addModel(m_model, next));
    // It has the same length and time as the one before, and therefore the same ETag.
    QFile manifest(m_sites.manifestFile());
    ASSERT_TRUE(manifest.open(QIODevice::ReadWrite) &&
                manifest.setFileTime(written, QFileDevice::FileModificationTime));
    // New clients get either manifest until the old one has expired in the cache.
    ManyClients late(QStringLiteral(FETCH_CLIENTS));
    ASSERT_TRUE(startClients(late, 10));
    expectComplete(10);
    const ClientResults results = late.results();
    EXPECT_EQ(results.failures, QStringList());
    EXPECT_EQ(results.sums.value(sumOf(m_image)) + results.sums.value(sumOf(next)), 10);

    ManyClients last(QStringLiteral(FETCH_CLIENTS));
    ASSERT_TRUE(startClients(last, 1));
    EXPECT_EQ(last.results().sums, (QMap<QString, int>{{sumOf(next), 1}}));
}

} // namespace
