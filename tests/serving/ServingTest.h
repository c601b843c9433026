#pragma once

#include "harness/process/Polling.h"
#include "harness/server/EdgeAndOrigin.h"
#include "harness/server/ManyClients.h"

#include <QCryptographicHash>

#include <gtest/gtest.h>

#include <random>

/// A firmware server, a caching server in front of it, and an image.
class ServingTest : public testing::Test
{
protected:
    void TearDown() override
    {
        if (HasFailure())
            ADD_FAILURE() << m_sites.errorText().toStdString() << '\n'
                          << m_sites.errorLogs().toStdString() << '\n'
                          << m_clients.errorText().toStdString();
    }

    static QByteArray randomBytes(int size, quint32 seed)
    {
        std::mt19937 engine(seed);
        QByteArray bytes(size, '\0');
        for (char &byte : bytes)
            byte = static_cast<char>(engine() & 0xFFU);
        return bytes;
    }
    static QString sumOf(const QByteArray &bytes)
    {
        return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
    }
    bool startClients(ManyClients &clients, int count)
    {
        return clients.start(count, EdgeAndOrigin::manifestUrl(), m_model, m_sites.authorityFile());
    }
    /// Starts the servers with the image, and `count` clients.
    void begin(int count, const EdgeAndOrigin::Options &options = {})
    {
        ASSERT_TRUE(m_sites.addModel(m_model, m_image)) << m_sites.errorText().toStdString();
        ASSERT_TRUE(m_sites.start(options)) << m_sites.errorText().toStdString();
        ASSERT_TRUE(startClients(m_clients, count));
    }
    /// Waits until all clients have received bytes.
    void waitForBytes()
    {
        ASSERT_TRUE(
            pollUntil([this] { return m_clients.hasArrivedEverywhere() || m_clients.haveEnded(); }, 120000));
        ASSERT_FALSE(m_clients.haveEnded());
    }
    /// Waits until the clients have ended, and expects that all `count` have the image.
    void expectComplete(int count)
    {
        const ClientResults results = m_clients.results();
        EXPECT_EQ(results.failures, QStringList());
        EXPECT_EQ(results.sums, (QMap<QString, int>{{sumOf(m_image), count}}));
    }

    const QString m_model = QStringLiteral("DevMaa");
    // Not a multiple of the slices; the borders of the ten ranges are not borders of slices.
    const QByteArray m_image = randomBytes(5000007, 1);
    EdgeAndOrigin m_sites;
    ManyClients m_clients{QStringLiteral(FETCH_CLIENTS)};
};
