#include "harness/process/Polling.h"
#include "harness/session/BusSession.h"
#include "simulator/files/WholeFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QJsonObject device(const char *key, int product, const char *start)
{
    return {{QStringLiteral("key"), QLatin1String(key)},
            {QStringLiteral("start"), QLatin1String(start)},
            {QStringLiteral("application"),
             QJsonObject{{QStringLiteral("vendorId"), 0xF102}, {QStringLiteral("productId"), product}}}};
}

/// The list in a program of its own, on the simulated bus.
class LibusbDeviceListTest : public testing::Test
{
protected:
    void startBus(const QJsonArray &devices)
    {
        const QJsonObject description{{QStringLiteral("devices"), devices}};
        ASSERT_TRUE(WholeFile::write(path("bus.json"), QJsonDocument(description).toJson()));
        ASSERT_TRUE(m_bus.start(path("bus.json"))) << m_bus.errorText().toStdString();
    }
    void startListing(const char *first, const char *last)
    {
        ASSERT_TRUE(m_bus.run({QStringLiteral(DEVICE_LIST_USER),
                               {QLatin1String(first), QLatin1String(last)},
                               m_folder.path(),
                               QProcessEnvironment::systemEnvironment(),
                               path("out"),
                               path("err")}))
            << m_bus.errorText().toStdString();
    }
    bool comeAndLeave(int times)
    {
        const QString visitor = QStringLiteral("visitor");
        for (int time = 0; time < times; ++time) {
            if (!m_bus.plug(visitor) || !m_bus.unplug(visitor))
                return false;
        }
        return true;
    }
    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }
    QList<QByteArray> output() const { return WholeFile::read(path("out")).split('\n'); }

    QTemporaryDir m_folder;
    BusSession m_bus;
};

TEST_F(LibusbDeviceListTest, DevicesThatCameAndLeftAreForgotten)
{
    constexpr int rounds = 50;
    startBus({device("visitor", 0xA001, "absent"), device("first", 0xA002, "absent"),
              device("last", 0xA003, "absent")});
    startListing("a002", "a003");
    ASSERT_TRUE(comeAndLeave(10)) << "what is allocated once is allocated now";
    ASSERT_TRUE(m_bus.plug(QStringLiteral("first")));
    ASSERT_TRUE(pollUntil([&] { return output().first() == "counting"; }));
    ASSERT_TRUE(comeAndLeave(rounds));
    ASSERT_TRUE(m_bus.plug(QStringLiteral("last")));
    ASSERT_EQ(m_bus.waitForExit(), 0);
    bool isNumber = false;
    const int grown = output().value(1).toInt(&isNumber);
    ASSERT_TRUE(isNumber);
    EXPECT_LT(grown, 150 * rounds) << "bytes: a device of libusb has more than 250";
}

} // namespace
