#include "harness/process/Polling.h"
#include "harness/session/BusControllerCommand.h"
#include "harness/session/BusSession.h"
#include "simulator/files/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QThread>

#include <gtest/gtest.h>

#include <csignal>

namespace {

QJsonObject deviceOf(const QString &key, int number, const QJsonObject &more = {})
{
    QJsonObject device = more;
    device.insert(QStringLiteral("key"), key);
    device.insert(QStringLiteral("application"), QJsonObject{{QStringLiteral("vendorId"), 0xF100 + number},
                                                             {QStringLiteral("productId"), 0xA000 + number}});
    return device;
}

QJsonObject node(int number, const char *name, bool acceptsReport, const QJsonObject &more = {})
{
    QJsonObject entry = more;
    entry.insert(QStringLiteral("number"), number);
    entry.insert(QStringLiteral("node"), QString::fromLatin1(name));
    entry.insert(QStringLiteral("acceptsReport"), acceptsReport);
    return entry;
}

QString idsOf(int number)
{
    return QStringLiteral("%1:%2").arg(0xF100 + number, 4, 16).arg(0xA000 + number, 4, 16);
}

const QString bootloaderIds = QStringLiteral("33c3:8899");
const QString rootHubIds = QStringLiteral("1d6b:0002");

/// The real libusb and hidapi, in a separate program, on the simulated bus.
class SimulatedBusTest : public testing::Test
{
protected:
    QString describe(const QJsonArray &devices) const
    {
        const QString file = path("bus.json");
        const QJsonObject description{{QStringLiteral("devices"), devices}};
        EXPECT_TRUE(WholeFile::write(file, QJsonDocument(description).toJson()));
        return file;
    }
    void startBus(const QJsonArray &devices)
    {
        ASSERT_TRUE(m_bus.start(describe(devices))) << m_bus.errorText().toStdString();
    }
    BusClient &bus() { return m_bus.client(); }
    QString path(const char *name) const { return m_folder.filePath(QString::fromLatin1(name)); }

    void startLister(const QStringList &arguments)
    {
        QFile::remove(path("out"));
        ASSERT_TRUE(m_bus.run({QStringLiteral(BUS_LISTER), arguments, m_folder.path(),
                               QProcessEnvironment::systemEnvironment(), path("out"), path("err")}))
            << m_bus.errorText().toStdString();
    }
    QVector<QJsonObject> lines() const
    {
        QVector<QJsonObject> read;
        QFile file(path("out"));
        if (file.open(QIODevice::ReadOnly)) {
            while (file.canReadLine() || !file.atEnd())
                read.append(QJsonDocument::fromJson(file.readLine()).object());
        }
        return read;
    }
    QVector<QJsonObject> listerOutput()
    {
        EXPECT_EQ(m_bus.waitForExit(), 0);
        return lines();
    }
    void waitForLines(int count) const
    {
        EXPECT_TRUE(pollUntil([&] { return lines().size() >= count; }));
    }
    QVector<QJsonObject> runLister(const QStringList &arguments)
    {
        startLister(arguments);
        return listerOutput();
    }
    QJsonObject list() { return runLister({QStringLiteral("list")}).value(0); }
    static QStringList usb(const QJsonObject &listing)
    {
        QStringList ids;
        for (const QJsonValue &device : listing.value(QLatin1String("usb")).toArray()) {
            if (device.toString() != rootHubIds)
                ids.append(device.toString());
        }
        return ids;
    }
    static QStringList paths(const QJsonObject &listing)
    {
        QStringList paths;
        for (const QJsonValue &hid : listing.value(QLatin1String("hid")).toArray())
            paths.append(hid.toObject().value(QLatin1String("path")).toString(QStringLiteral("(null)")));
        return paths;
    }
    /// Writes to a node through hidapi. Returns the result of hid_write().
    int write(const char *nodeName, const QByteArray &report)
    {
        const auto output =
            runLister({QStringLiteral("open-path"), QStringLiteral("/dev/") + QString::fromLatin1(nodeName),
                       QStringLiteral("write"), QString::fromLatin1(report.toHex())});
        EXPECT_TRUE(output.value(0).value(QLatin1String("opened")).toBool());
        return output.value(1).value(QLatin1String("written")).toInt(-99);
    }
    void touch(const char *name) { ASSERT_TRUE(WholeFile::write(path(name))); }

    const QByteArray m_right = QByteArray::fromHex("0443525400004150504e4557") + QByteArray(501, '\0');
    QTemporaryDir m_folder;
    BusSession m_bus;
};

TEST_F(SimulatedBusTest, AReportThatIsTooShortOrTooLongForTheKernelIsRefused)
{
    startBus({deviceOf(QStringLiteral("a"), 1,
                       {{QStringLiteral("interfaces"), QJsonArray{node(0, "hidraw_a", true)}}})});
    EXPECT_EQ(write("hidraw_a", QByteArray(1, '\4')), -1);
    EXPECT_EQ(write("hidraw_a", QByteArray(16385, '\4')), -1);
    EXPECT_EQ(write("hidraw_a", QByteArray(2, '\4')), 2);
    EXPECT_EQ(write("hidraw_a", QByteArray(16384, '\4')), 16384);
}

TEST_F(SimulatedBusTest, ABusOutlivesTheAddressesThatItHasForDevices)
{
    startBus({deviceOf(QStringLiteral("a"), 1)});
    for (int times = 0; times < 130; ++times) {
        ASSERT_TRUE(bus().unplug(QStringLiteral("a"))) << times;
        ASSERT_TRUE(bus().plug(QStringLiteral("a"))) << times << m_bus.errorText().toStdString();
        if (times % 10 != 9)
            continue;
        const QJsonObject listing = list();
        EXPECT_EQ(usb(listing), QStringList{idsOf(1)}) << times;
        EXPECT_EQ(paths(listing), QStringList{QStringLiteral("/dev/hidraw0")}) << times;
    }
}

TEST_F(SimulatedBusTest, DevicesAreListedInTheOrderOfTheirPositions)
{
    startBus({deviceOf(QStringLiteral("b"), 2, {{QStringLiteral("position"), 30}}),
              deviceOf(QStringLiteral("a"), 9, {{QStringLiteral("position"), 5}}),
              deviceOf(QStringLiteral("c"), 1, {{QStringLiteral("position"), 31}})});
    EXPECT_EQ(usb(list()), QStringList({idsOf(9), idsOf(2), idsOf(1)}));
}

TEST_F(SimulatedBusTest, UnpluggedDevicesDisappearAndPluggedOnesAppear)
{
    startBus({deviceOf(QStringLiteral("a"), 1),
              deviceOf(QStringLiteral("b"), 2, {{QStringLiteral("start"), QStringLiteral("absent")}})});
    EXPECT_EQ(usb(list()), QStringList({idsOf(1)}));
    ASSERT_TRUE(bus().unplug(QStringLiteral("a")));
    ASSERT_TRUE(bus().plug(QStringLiteral("b")));
    const QJsonObject listing = list();
    EXPECT_EQ(usb(listing), QStringList({idsOf(2)}));
    EXPECT_EQ(paths(listing), QStringList({QStringLiteral("/dev/hidraw1")}));
    ASSERT_TRUE(bus().unplug(QStringLiteral("b")));
    EXPECT_EQ(usb(list()), QStringList());
}

TEST_F(SimulatedBusTest, ARunningProgramSeesADeviceComeAndGo)
{
    startBus({deviceOf(QStringLiteral("a"), 1)});
    // The number of devices, including the root hub, and of interfaces.
    startLister({QStringLiteral("list"), QStringLiteral("wait-bus"), QStringLiteral("1"), QStringLiteral("0"),
                 QStringLiteral("list"), QStringLiteral("wait-bus"), QStringLiteral("2"), QStringLiteral("1"),
                 QStringLiteral("list")});
    waitForLines(1);
    ASSERT_TRUE(bus().unplug(QStringLiteral("a")));
    waitForLines(2);
    ASSERT_TRUE(bus().plug(QStringLiteral("a")));
    const auto output = listerOutput();
    ASSERT_EQ(output.size(), 3);
    EXPECT_EQ(usb(output.at(0)), QStringList({idsOf(1)}));
    EXPECT_EQ(usb(output.at(1)), QStringList());
    EXPECT_EQ(paths(output.at(1)), QStringList());
    EXPECT_EQ(usb(output.at(2)), QStringList({idsOf(1)}));
    EXPECT_EQ(paths(output.at(2)), QStringList({QStringLiteral("/dev/hidraw0")}));
}

TEST_F(SimulatedBusTest, TheRightReportBringsTheBootloaderOntoTheBus)
{
    startBus({deviceOf(QStringLiteral("a"), 1)});
    EXPECT_EQ(write("hidraw0", m_right), 513);
    ASSERT_TRUE(m_bus.waitForDevice(QStringLiteral("a"), QStringLiteral("bootloader")));
    const QJsonObject listing = list();
    EXPECT_EQ(usb(listing), QStringList({bootloaderIds}));
    EXPECT_EQ(paths(listing), QStringList());
    ASSERT_TRUE(bus().burn("image"));
    ASSERT_TRUE(bus().reset());
    ASSERT_TRUE(m_bus.waitForDevice(QStringLiteral("a"), QStringLiteral("application")));
    EXPECT_EQ(usb(list()), QStringList({idsOf(1)}));
    EXPECT_EQ(bus().device(QStringLiteral("a")).value(QLatin1String("receivedBytes")).toInt(), 5);
}

TEST_F(SimulatedBusTest, AReportThatIsShortWrongOrOnTheWrongInterfaceDoesNotChangeTheDevice)
{
    startBus({deviceOf(QStringLiteral("a"), 1,
                       {{QStringLiteral("interfaces"),
                         QJsonArray{node(0, "hidraw_MI_00_a", true), node(1, "hidraw_MI_01_a", false)}}})});
    EXPECT_EQ(write("hidraw_MI_00_a", m_right.left(512)), 512);
    EXPECT_EQ(write("hidraw_MI_00_a", QByteArray(m_right).replace("NEW", "OLD")), 513);
    EXPECT_EQ(write("hidraw_MI_01_a", m_right), 513);
    QThread::msleep(300);
    const QJsonObject device = bus().device(QStringLiteral("a"));
    EXPECT_EQ(device.value(QLatin1String("state")).toString(), QStringLiteral("application"));
    const QJsonArray reports = device.value(QLatin1String("reports")).toArray();
    ASSERT_EQ(reports.size(), 3);
    EXPECT_EQ(reports.at(2).toString(), QString::fromLatin1(m_right.toHex()));
}

TEST_F(SimulatedBusTest, ReportsArriveEvenIfTheTemporaryFolderHasALongName)
{
    const QByteArray before = qgetenv("TMPDIR");
    const QString folder = path("a").leftJustified(90, QLatin1Char('a'));
    ASSERT_TRUE(QDir().mkpath(folder));
    qputenv("TMPDIR", folder.toLocal8Bit());
    startBus({deviceOf(QStringLiteral("dev1"), 1,
                       {{QStringLiteral("interfaces"), QJsonArray{node(0, "hidraw_MI_00_a", true)}}})});
    before.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before);

    EXPECT_EQ(write("hidraw_MI_00_a", m_right), 513);
}

TEST_F(SimulatedBusTest, AMarkerAppearsInThePathAsItWasWritten)
{
    startBus({deviceOf(QStringLiteral("mi"), 1,
                       {{QStringLiteral("interfaces"), QJsonArray{node(0, "hidraw_mi_00_x", true)}}}),
              deviceOf(QStringLiteral("col"), 2,
                       {{QStringLiteral("interfaces"),
                         QJsonArray{node(0, "hidraw_Col01", false, {{QStringLiteral("collection"), 1}}),
                                    node(0, "hidraw_Col04", true, {{QStringLiteral("collection"), 4}})}}})});
    QStringList found = paths(list());
    found.sort();
    EXPECT_EQ(found, QStringList({QStringLiteral("/dev/hidraw_Col01"), QStringLiteral("/dev/hidraw_Col04"),
                                  QStringLiteral("/dev/hidraw_mi_00_x")}));
    EXPECT_EQ(write("hidraw_Col04", m_right), 513);
    EXPECT_TRUE(m_bus.waitForDevice(QStringLiteral("col"), QStringLiteral("bootloader")));
}

TEST_F(SimulatedBusTest, CollectionsOfOneInterfaceShareItsPathAndKeepTheirOrder)
{
    const QJsonArray one{node(2, "hidraw7", true, {{QStringLiteral("collections"), 4}})};
    startBus({deviceOf(QStringLiteral("a"), 1, {{QStringLiteral("interfaces"), one}})});
    const QJsonArray found = list().value(QLatin1String("hid")).toArray();
    ASSERT_EQ(found.size(), 4);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(found.at(i).toObject().value(QLatin1String("path")).toString(),
                  QStringLiteral("/dev/hidraw7"));
        EXPECT_EQ(found.at(i).toObject().value(QLatin1String("interface")).toInt(), 2);
        EXPECT_EQ(found.at(i).toObject().value(QLatin1String("usage")).toInt(), i + 1);
    }
}

TEST_F(SimulatedBusTest, TwoBootloadersCanBeOnTheBus)
{
    const QJsonObject asBootloader{{QStringLiteral("start"), QStringLiteral("bootloader")}};
    startBus(
        {deviceOf(QStringLiteral("a"), 1, asBootloader), deviceOf(QStringLiteral("b"), 2, asBootloader)});
    EXPECT_EQ(usb(list()), QStringList({bootloaderIds, bootloaderIds}));
}

TEST_F(SimulatedBusTest, TwentyDevicesAreListedInOrder)
{
    QJsonArray devices;
    QStringList expected;
    for (int i = 1; i <= 20; ++i) {
        devices.append(deviceOf(QString::number(i), i));
        expected.append(idsOf(i));
    }
    startBus(devices);
    const QJsonObject listing = list();
    EXPECT_EQ(usb(listing), expected);
    EXPECT_EQ(paths(listing).size(), 20);
}

TEST_F(SimulatedBusTest, AnInterfaceCanBeWithoutAPath)
{
    const QJsonArray pathless{node(0, "hidraw3", false, {{QStringLiteral("pathless"), true}})};
    startBus({deviceOf(QStringLiteral("a"), 1, {{QStringLiteral("interfaces"), pathless}})});
    EXPECT_EQ(paths(list()), QStringList({QStringLiteral("(null)")}));
}

TEST_F(SimulatedBusTest, AnInterfaceCanRefuseToBeOpened)
{
    const QJsonArray locked{node(0, "hidraw3", false, {{QStringLiteral("openable"), false}})};
    startBus({deviceOf(QStringLiteral("a"), 1, {{QStringLiteral("interfaces"), locked}})});
    const auto output =
        runLister({QStringLiteral("open-ids"), QStringLiteral("0xF101"), QStringLiteral("0xA001")});
    EXPECT_FALSE(output.value(0).value(QLatin1String("opened")).toBool(true));
}

TEST_F(SimulatedBusTest, RefusedAndShortWritesReachTheProgramAsSuch)
{
    startBus({deviceOf(QStringLiteral("a"), 1)});
    const auto writesAnswer = [this](const char *answer, int count) {
        const QJsonObject writes{{QStringLiteral("answer"), QString::fromLatin1(answer)},
                                 {QStringLiteral("count"), count}};
        EXPECT_TRUE(bus().setReportAnswer(QStringLiteral("a"), {{QStringLiteral("writes"), writes}}));
        return write("hidraw0", m_right);
    };
    EXPECT_EQ(writesAnswer("refused", 0), -1);
    EXPECT_EQ(writesAnswer("error", 0), -1);
    EXPECT_EQ(writesAnswer("short", 64), 64);
    EXPECT_EQ(writesAnswer("short", 0), 0);
    EXPECT_EQ(bus().device(QStringLiteral("a")).value(QLatin1String("state")).toString(),
              QStringLiteral("application"));
}

TEST_F(SimulatedBusTest, AHandleOpenedBeforeUnpluggingDoesNotReachTheNextDevice)
{
    startBus({deviceOf(QStringLiteral("a"), 1)});
    startLister({QStringLiteral("open-path"), QStringLiteral("/dev/hidraw0"), QStringLiteral("wait-file"),
                 path("go"), QStringLiteral("write"), QString::fromLatin1(m_right.toHex())});
    waitForLines(1);
    ASSERT_TRUE(bus().unplug(QStringLiteral("a")));
    ASSERT_TRUE(bus().plug(QStringLiteral("a")));
    touch("go");
    const auto output = listerOutput();
    EXPECT_EQ(output.value(1).value(QLatin1String("written")).toInt(), -1);
    EXPECT_TRUE(bus().device(QStringLiteral("a")).value(QLatin1String("reports")).toArray().isEmpty());
}

TEST_F(SimulatedBusTest, PluggingAndUnpluggingWhileAProgramEnumeratesDoesNotCrashIt)
{
    startBus({deviceOf(QStringLiteral("a"), 1), deviceOf(QStringLiteral("b"), 2)});
    startLister({QStringLiteral("watch"), path("stop")});
    for (int i = 0; i < 40; ++i) {
        ASSERT_TRUE(bus().unplug(QStringLiteral("b"))) << bus().errorText().toStdString();
        ASSERT_TRUE(bus().plug(QStringLiteral("b"))) << bus().errorText().toStdString();
    }
    touch("stop");
    const QJsonObject watched = listerOutput().value(0);
    EXPECT_GT(watched.value(QLatin1String("times")).toInt(), 10);
    EXPECT_EQ(watched.value(QLatin1String("nullPaths")).toInt(-1), 0);
}

TEST_F(SimulatedBusTest, TheControllerEndsWhenItsInputEnds)
{
    ChildProcess controller;
    ASSERT_TRUE(controller.start(busControllerCommand(describe({}))));
    ASSERT_FALSE(controller.waitForReadyLine().isEmpty()) << controller.errorText().toStdString();
    EXPECT_TRUE(controller.end(10000));
}

TEST_F(SimulatedBusTest, ATerminatedControllerRemovesItsTestbed)
{
    ChildProcess controller;
    ASSERT_TRUE(controller.start(busControllerCommand(describe({deviceOf(QStringLiteral("a"), 1)}))));
    const QJsonObject ready = controller.waitForReadyLine();
    const QString testbed =
        ready.value(QLatin1String("environment")).toObject().value(QLatin1String("UMOCKDEV_DIR")).toString();
    ASSERT_TRUE(QFile::exists(testbed)) << controller.errorText().toStdString();
    ASSERT_EQ(::kill(static_cast<pid_t>(controller.processId()), SIGTERM), 0);
    EXPECT_TRUE(pollUntil([&] { return !controller.isRunning(); }));
    EXPECT_FALSE(QFile::exists(testbed));
}

TEST_F(SimulatedBusTest, WrongRequestsAreAnsweredWithAnError)
{
    startBus({deviceOf(QStringLiteral("a"), 1)});
    EXPECT_FALSE(bus()
                     .request({{QStringLiteral("op"), QStringLiteral("sing")}})
                     .value(QLatin1String("ok"))
                     .toBool(true));
    EXPECT_FALSE(bus().plug(QStringLiteral("nobody")));
    EXPECT_FALSE(bus().plug(QStringLiteral("a")));
    for (const char *gone : {"run", "kill"}) {
        EXPECT_FALSE(bus()
                         .request({{QStringLiteral("op"), QString::fromLatin1(gone)}})
                         .value(QLatin1String("ok"))
                         .toBool(true))
            << gone;
    }
    EXPECT_FALSE(bus().burn("image"));
    EXPECT_EQ(bus().errorText(), QStringLiteral("no bootloader on the bus"));
    EXPECT_TRUE(bus().state().value(QLatin1String("ok")).toBool());
}

} // namespace
