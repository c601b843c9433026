#include "harness/BuildPaths.h"
#include "harness/process/Polling.h"
#include "harness/session/BusSession.h"
#include "harness/stage/WinePrefix_linux.h"
#include "simulator/bus/UpdateModeReport.h"
#include "simulator/files/WholeFile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

constexpr int limitMs = 60000;

QJsonObject interface(int number, bool acceptsReport, const QJsonObject &more = {})
{
    QJsonObject entry = more;
    entry.insert(QStringLiteral("number"), number);
    entry.insert(QStringLiteral("acceptsReport"), acceptsReport);
    return entry;
}

QJsonObject deviceOf(const char *key, int number, const QJsonArray &interfaces = {interface(0, true)})
{
    return {{QStringLiteral("key"), QLatin1String(key)},
            {QStringLiteral("application"), QJsonObject{{QStringLiteral("vendorId"), 0xF100 + number},
                                                        {QStringLiteral("productId"), 0xA000 + number}}},
            {QStringLiteral("interfaces"), interfaces}};
}

const QString rightReport = QString::fromLatin1(updateModeReport(ReportAnswer::Layout::A).toHex());

/// A small program under Wine, with the replacements for libusb and hidapi.
class StandInLibrariesTest : public testing::Test
{
protected:
    void startBus(const QJsonArray &devices)
    {
        const QString file = path("bus.json");
        const QJsonObject description{{QStringLiteral("devices"), devices}};
        ASSERT_TRUE(WholeFile::write(file, QJsonDocument(description).toJson()));
        ASSERT_TRUE(
            m_bus.startController({BuildPaths::listedBusController(), QStringLiteral("--description"), file}))
            << m_bus.errorText().toStdString();
    }

    void startVisitor(const QStringList &steps)
    {
        ASSERT_TRUE(m_prefix.isValid()) << m_prefix.errorText().toStdString();
        const QString visitor = QStringLiteral(WINDOWS_BUILD "/stand-ins/quillmarsh-bus-visitor.exe");
        ASSERT_TRUE(QFile::exists(visitor));
        ASSERT_TRUE(m_bus.run({QStringLiteral("wine"), QStringList{visitor} + steps, m_folder.path(),
                               m_prefix.environment(), path("out"), path("err")}))
            << m_bus.errorText().toStdString();
    }

    QList<QJsonObject> lines() const
    {
        QList<QJsonObject> read;
        QFile file(path("out"));
        if (file.open(QIODevice::ReadOnly)) {
            while (!file.atEnd())
                read.append(QJsonDocument::fromJson(file.readLine()).object());
        }
        return read;
    }

    QList<QJsonObject> visit(const QStringList &steps)
    {
        startVisitor(steps);
        EXPECT_EQ(m_bus.waitForExit(limitMs), 0);
        return lines();
    }

    void waitForLines(int count) const
    {
        ASSERT_TRUE(pollUntil([&] { return lines().size() >= count; }, limitMs));
    }

    /// Creates the file for which "wait go" waits.
    void letGo() const { ASSERT_TRUE(WholeFile::write(path("go"))); }

    static QStringList paths(const QJsonObject &listing)
    {
        QStringList all;
        for (const QJsonValue &entry : listing.value(QLatin1String("hid")).toArray())
            all.append(entry.toObject().value(QLatin1String("path")).toString(QStringLiteral("(null)")));
        return all;
    }

    static QJsonValue usb(const QJsonObject &listing, const char *field)
    {
        return listing.value(QLatin1String("usb")).toObject().value(QLatin1String(field));
    }

    int opened()
    {
        return m_bus.client()
            .request({{QStringLiteral("op"), QStringLiteral("hidOpened")}})
            .value(QLatin1String("count"))
            .toInt(-1);
    }

    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

    QTemporaryDir m_folder;
    WinePrefix m_prefix{QStringLiteral(WINDOWS_BUILD "/wine")};
    BusSession m_bus;
};

TEST_F(StandInLibrariesTest, BothListTheBusInItsOrder)
{
    startBus({deviceOf("b", 2), deviceOf("a", 1, {interface(0, true), interface(1, false)})});
    const auto seen = visit({QStringLiteral("init"), QStringLiteral("list")});
    ASSERT_EQ(seen.size(), 2);
    EXPECT_EQ(seen.at(0), (QJsonObject{{QStringLiteral("libusb"), 0}, {QStringLiteral("hidapi"), 0}}));
    EXPECT_EQ(usb(seen.at(1), "ids"), (QJsonArray{QStringLiteral("f102:a002"), QStringLiteral("f101:a001"),
                                                  QStringLiteral("1d6b:0002")}));
    EXPECT_EQ(usb(seen.at(1), "count"), 3);
    EXPECT_EQ(usb(seen.at(1), "endsWithNull"), true);
    const QStringList found = paths(seen.at(1));
    ASSERT_EQ(found.size(), 3);
    EXPECT_TRUE(found.at(0).startsWith(QStringLiteral("\\\\?\\hid#vid_f102&pid_a002#")));
    EXPECT_TRUE(found.at(1).startsWith(QStringLiteral("\\\\?\\hid#vid_f101&pid_a001&mi_00#")));
    EXPECT_TRUE(found.at(2).startsWith(QStringLiteral("\\\\?\\hid#vid_f101&pid_a001&mi_01#")));
}

TEST_F(StandInLibrariesTest, WithoutABusNeitherInitialises)
{
    const auto seen = visit({QStringLiteral("init")});
    ASSERT_EQ(seen.size(), 1);
    EXPECT_EQ(seen.at(0), (QJsonObject{{QStringLiteral("libusb"), -99}, {QStringLiteral("hidapi"), -1}}));
}

TEST_F(StandInLibrariesTest, TheRightReportBringsTheBootloaderOntoTheBus)
{
    startBus({deviceOf("a", 1)});
    startVisitor({QStringLiteral("init"), QStringLiteral("open"), QStringLiteral("0xF101"),
                  QStringLiteral("0xA001"), QStringLiteral("write"), rightReport, QStringLiteral("wait"),
                  QStringLiteral("go"), QStringLiteral("list")});
    waitForLines(4);
    EXPECT_EQ(lines().at(2).value(QLatin1String("written")), 513);
    ASSERT_TRUE(m_bus.waitForDevice(QStringLiteral("a"), QStringLiteral("bootloader"), limitMs));
    EXPECT_EQ(opened(), 1);
    letGo();
    EXPECT_EQ(m_bus.waitForExit(limitMs), 0);
    waitForLines(5);
    EXPECT_EQ(usb(lines().at(4), "ids"),
              (QJsonArray{QStringLiteral("33c3:8899"), QStringLiteral("1d6b:0002")}));
    EXPECT_TRUE(paths(lines().at(4)).isEmpty());
    EXPECT_EQ(opened(), 0) << "the handle was not closed";
}

TEST_F(StandInLibrariesTest, AReportOnTheOtherInterfaceDoesNotChangeTheDevice)
{
    startBus({deviceOf("a", 1, {interface(0, false), interface(1, true)})});
    // The first interface with the ids, like hid_open().
    const auto seen =
        visit({QStringLiteral("init"), QStringLiteral("open"), QStringLiteral("0xF101"),
               QStringLiteral("0xA001"), QStringLiteral("write"), rightReport, QStringLiteral("error")});
    ASSERT_EQ(seen.size(), 4);
    EXPECT_EQ(seen.at(2).value(QLatin1String("written")), 513);
    EXPECT_EQ(seen.at(3).value(QLatin1String("error")), QStringLiteral("Success"));
    EXPECT_FALSE(m_bus.waitForDevice(QStringLiteral("a"), QStringLiteral("bootloader"), 1000));
}

TEST_F(StandInLibrariesTest, AMarkedPathIsOpenedByItselfInAnyLetterCase)
{
    startBus({deviceOf("a", 1, {interface(0, false), interface(1, true)})});
    const auto listing = visit({QStringLiteral("init"), QStringLiteral("list")});
    ASSERT_EQ(listing.size(), 2);
    const QString second = paths(listing.at(1)).value(1).toUpper();
    ASSERT_TRUE(second.contains(QStringLiteral("&MI_01#")));
    const auto seen = visit(
        {QStringLiteral("init"), QStringLiteral("open-path"), second, QStringLiteral("write"), rightReport});
    EXPECT_EQ(seen.value(2).value(QLatin1String("written")), 513);
    EXPECT_TRUE(m_bus.waitForDevice(QStringLiteral("a"), QStringLiteral("bootloader"), limitMs));
}

TEST_F(StandInLibrariesTest, AFailedWriteHasTheErrorTextOfTheSystem)
{
    QJsonObject refusing = deviceOf("a", 1);
    refusing.insert(QStringLiteral("writes"),
                    QJsonObject{{QStringLiteral("answer"), QStringLiteral("refused")}});
    startBus({refusing});
    const auto seen =
        visit({QStringLiteral("init"), QStringLiteral("open"), QStringLiteral("0xF101"),
               QStringLiteral("0xA001"), QStringLiteral("write"), rightReport, QStringLiteral("error")});
    ASSERT_EQ(seen.size(), 4);
    EXPECT_EQ(seen.at(2).value(QLatin1String("written")), -1);
    const QString error = seen.at(3).value(QLatin1String("error")).toString();
    EXPECT_TRUE(error.startsWith(QStringLiteral("hid_write/WriteFile: (0x0000001F) ")))
        << error.toStdString();
}

TEST_F(StandInLibrariesTest, AHandleOpenedBeforeUnpluggingDoesNotReachTheNextDevice)
{
    startBus({deviceOf("a", 1)});
    startVisitor({QStringLiteral("init"), QStringLiteral("open"), QStringLiteral("0xF101"),
                  QStringLiteral("0xA001"), QStringLiteral("wait"), QStringLiteral("go"),
                  QStringLiteral("write"), rightReport});
    waitForLines(3);
    ASSERT_TRUE(m_bus.unplug(QStringLiteral("a")));
    ASSERT_TRUE(m_bus.plug(QStringLiteral("a")));
    letGo();
    EXPECT_EQ(m_bus.waitForExit(limitMs), 0);
    EXPECT_EQ(lines().value(3).value(QLatin1String("written")), -1);
}

TEST_F(StandInLibrariesTest, AnInterfaceWithoutAPathOrThatRefusesIsNotOpened)
{
    startBus({deviceOf("a", 1,
                       {interface(0, true, {{QStringLiteral("openable"), false}}),
                        interface(1, false, {{QStringLiteral("pathless"), true}})})});
    const auto seen = visit({QStringLiteral("init"), QStringLiteral("list"), QStringLiteral("open"),
                             QStringLiteral("0xF101"), QStringLiteral("0xA001"), QStringLiteral("error")});
    ASSERT_EQ(seen.size(), 4);
    EXPECT_EQ(paths(seen.at(1)).value(1), QStringLiteral("(null)"));
    EXPECT_EQ(seen.at(2).value(QLatin1String("opened")), false);
    EXPECT_TRUE(seen.at(3).value(QLatin1String("error")).toString().contains(QStringLiteral("(0x00000005)")));
}

} // namespace
