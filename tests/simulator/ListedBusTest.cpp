#include "simulator/bus/ListedBus.h"

#include <QJsonArray>

#include <gtest/gtest.h>

#include <cerrno>

namespace {

class ListedBusTest : public testing::Test
{
protected:
    ListedBusTest()
    {
        m_bus.setWriteHandler([this](int device, int node, const QByteArray &report) {
            m_written.append(
                QStringLiteral("%1.%2 %3").arg(device).arg(node).arg(QString::fromLatin1(report.toHex())));
            return m_answer;
        });
    }

    static BusPresenter::Device device(int position, int nodes)
    {
        BusPresenter::Device shown;
        shown.ids = {static_cast<quint16>(0xF100 + position), static_cast<quint16>(0xA000 + position)};
        shown.position = position;
        for (int number = 0; number < nodes; ++number) {
            HidNodeDescription node;
            node.number = number;
            shown.nodes.append(node);
        }
        return shown;
    }

    QJsonObject ask(const char *operation, QJsonObject request = {})
    {
        request.insert(QStringLiteral("op"), QLatin1String(operation));
        const std::optional<QJsonObject> answer = m_bus.perform(request);
        return answer ? *answer : QJsonObject{{QStringLiteral("error"), QStringLiteral("not its own")}};
    }

    QJsonArray interfaces() { return ask("hidInterfaces").value(QLatin1String("interfaces")).toArray(); }
    QJsonValue path(int index) { return interfaces().at(index).toObject().value(QLatin1String("path")); }
    QJsonObject open(const QJsonValue &path) { return ask("hidOpen", {{QStringLiteral("path"), path}}); }
    int opened() { return ask("hidOpened").value(QLatin1String("count")).toInt(-1); }

    int handleOf(int index) { return open(path(index)).value(QLatin1String("handle")).toInt(-1); }
    QJsonObject write(int handle)
    {
        return ask("hidWrite", {{QStringLiteral("handle"), handle},
                                {QStringLiteral("report"), QStringLiteral("0443ff")}});
    }
    static QString errorOf(const QJsonObject &answer)
    {
        EXPECT_FALSE(answer.value(QLatin1String("ok")).toBool());
        return answer.value(QLatin1String("error")).toString();
    }

    ListedBus m_bus{true};
    QStringList m_written;
    BusPresenter::WriteAnswer m_answer{3, 0};
};

TEST_F(ListedBusTest, DevicesAreListedByPositionWhateverTheOrderTheyCameIn)
{
    m_bus.add(0, device(5, 1));
    m_bus.add(1, device(2, 1));
    QStringList ids;
    for (const QJsonValue &descriptor : ask("usbDevices").value(QLatin1String("devices")).toArray()) {
        EXPECT_EQ(descriptor.toString().size(), 2 * 18);
        ids.append(descriptor.toString().mid(16, 8));
    }
    // Low byte first; the root hub comes last.
    EXPECT_EQ(ids, (QStringList{QStringLiteral("02f102a0"), QStringLiteral("05f105a0"),
                                QStringLiteral("6b1d0200")}));
    EXPECT_EQ(interfaces().at(0).toObject().value(QLatin1String("productId")).toInt(), 0xA002);
}

TEST_F(ListedBusTest, AWriteReachesTheNodeWhosePathWasOpened)
{
    m_bus.add(7, device(1, 2));
    EXPECT_EQ(write(handleOf(1)).value(QLatin1String("count")).toInt(), 3);
    EXPECT_EQ(m_written, QStringList{QStringLiteral("7.1 0443ff")});
}

TEST_F(ListedBusTest, TheLetterCaseOfAPathIsIgnored)
{
    m_bus.add(0, device(1, 1));
    EXPECT_TRUE(open(path(0).toString().toUpper()).value(QLatin1String("ok")).toBool());
    EXPECT_EQ(errorOf(open(QStringLiteral("\\\\?\\hid#another"))), QStringLiteral("gone"));
}

TEST_F(ListedBusTest, AWriteToAnEarlierAppearanceFails)
{
    m_bus.add(0, device(1, 1));
    const int handle = handleOf(0);
    m_bus.remove(0);
    EXPECT_EQ(errorOf(write(handle)), QStringLiteral("gone"));
    m_bus.add(0, device(1, 1));
    EXPECT_EQ(errorOf(write(handle)), QStringLiteral("gone"));
    EXPECT_EQ(write(handleOf(0)).value(QLatin1String("count")).toInt(), 3);
    EXPECT_EQ(m_written.size(), 1);
}

TEST_F(ListedBusTest, EachErrorOfAWriteHasItsOwnName)
{
    m_bus.add(0, device(1, 1));
    const int handle = handleOf(0);
    m_answer = {-1, EPIPE};
    EXPECT_EQ(errorOf(write(handle)), QStringLiteral("refused"));
    m_answer = {-1, EIO};
    EXPECT_EQ(errorOf(write(handle)), QStringLiteral("broken"));
    m_answer = {-1, ENODEV};
    EXPECT_EQ(errorOf(write(handle)), QStringLiteral("gone"));
    m_answer = {0, 0};
    EXPECT_EQ(write(handle).value(QLatin1String("count")).toInt(-1), 0);
}

TEST_F(ListedBusTest, OpenHandlesAreCountedUntilTheyAreClosed)
{
    m_bus.add(0, device(1, 1));
    const int first = handleOf(0);
    const int second = handleOf(0);
    EXPECT_EQ(opened(), 2);
    EXPECT_TRUE(ask("hidClose", {{QStringLiteral("handle"), first}}).value(QLatin1String("ok")).toBool());
    EXPECT_EQ(opened(), 1);
    EXPECT_EQ(errorOf(ask("hidClose", {{QStringLiteral("handle"), first}})),
              QStringLiteral("no such handle"));
    EXPECT_EQ(errorOf(write(first)), QStringLiteral("no such handle"));
    EXPECT_TRUE(write(second).value(QLatin1String("ok")).toBool());
}

TEST_F(ListedBusTest, AnInterfaceCanBeListedWithoutAPathOrRefuseToOpen)
{
    BusPresenter::Device shown = device(1, 2);
    shown.nodes[0].pathless = true;
    shown.nodes[1].openable = false;
    m_bus.add(0, shown);
    EXPECT_TRUE(path(0).isNull());
    EXPECT_EQ(errorOf(open(path(1))), QStringLiteral("denied"));
}

TEST_F(ListedBusTest, EachCollectionIsListedAndReachesItsNode)
{
    BusPresenter::Device shown = device(1, 1);
    shown.nodes[0].collections = 4;
    m_bus.add(0, shown);
    ASSERT_EQ(interfaces().size(), 4);
    EXPECT_TRUE(path(3).toString().contains(QStringLiteral("&col04#")));
    EXPECT_TRUE(write(handleOf(3)).value(QLatin1String("ok")).toBool());
    EXPECT_EQ(m_written, QStringList{QStringLiteral("0.0 0443ff")});
}

TEST_F(ListedBusTest, UnknownOperationsAreNotHandled)
{
    EXPECT_EQ(ask("state").value(QLatin1String("error")).toString(), QStringLiteral("not its own"));
}

} // namespace
