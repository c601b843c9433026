#include "tests/cli/CliTest.h"

namespace {

using namespace CliCases;

/// Runs whole updates without a window.
class CliUpdateTest : public CliTest
{
protected:
    QString imageFile(const char *name, const QByteArray &bytes)
    {
        EXPECT_TRUE(WholeFile::write(onThisSystem(name), bytes));
        return scenario().program.toProgramPath(onThisSystem(name));
    }
    QString onThisSystem(const char *name)
    {
        return scenario().program.workingFolder() + QLatin1String("/../") + QLatin1String(name);
    }

    const QByteArray m_bytes = QByteArray("an image of one's own \0 with a zero", 35).repeated(300);
};

TEST_F(CliUpdateTest, ADeviceIsUpdatedOverUsb)
{
    CliScenario &s = scenario();
    EXPECT_EQ(run({update}), 0);
    expectSucceeded("resetting");
    EXPECT_EQ(lastEvent().value(QLatin1String("sum")).toString(), sumOf(s.image()));
    EXPECT_EQ(stages(), (QStringList{QStringLiteral("fetching"), QStringLiteral("entering-bootloader"),
                                     QStringLiteral("flashing"), QStringLiteral("resetting")}));
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_TRUE(s.bus.waitForDevice(s.model(), application));
    EXPECT_EQ(s.program.runs(usbFlasher).size(), 2) << "a burn and a reset";
    EXPECT_TRUE(s.program.runs(hidFlasher).isEmpty());
    const QJsonObject seconds = s.events().last().value(QLatin1String("seconds")).toObject();
    EXPECT_EQ(seconds.keys(), (QStringList{QStringLiteral("entering-bootloader"), QStringLiteral("fetching"),
                                           QStringLiteral("flashing"), QStringLiteral("resetting")}));
}

TEST_F(CliUpdateTest, AnUpdateShowsTheSameOfTheDeviceAsTheList)
{
    CliScenario &s = scenario();
    const auto deviceAfter = [&](const QStringList &arguments) {
        run(arguments);
        const QList<QJsonObject> devices = s.events(QStringLiteral("device"));
        EXPECT_EQ(devices.size(), 1);
        QJsonObject device = devices.value(0);
        device.remove(QStringLiteral("time"));
        return device;
    };
    const QStringList list{QStringLiteral("list")};
    QJsonObject listed = deviceAfter(list);
    EXPECT_NE(listed.value(QLatin1String("position")).toString(), QString());
    EXPECT_EQ(deviceAfter({update, QStringLiteral("--no-reset")}), listed);
    listed = deviceAfter(list);
    EXPECT_EQ(listed.value(QLatin1String("state")).toString(), QStringLiteral("bootloader"));
    EXPECT_EQ(deviceAfter({update, QStringLiteral("--model"), s.model()}), listed);
}

TEST_F(CliUpdateTest, TheDownloadReportsBytesAndTheFlasherAPercentage)
{
    CliScenario &s = scenario();
    EXPECT_EQ(run({update}), 0);
    bool isFlashing = false;
    double received = -1;
    int written = -1;
    for (const QJsonObject &event : s.events()) {
        isFlashing = isFlashing || event.value(QLatin1String("stage")) == QLatin1String("flashing");
        if (event.value(QLatin1String("event")) != QLatin1String("progress"))
            continue;
        if (isFlashing) {
            EXPECT_TRUE(event.value(QLatin1String("bytes")).isNull());
            EXPECT_GE(event.value(QLatin1String("percent")).toInt(), written);
            written = event.value(QLatin1String("percent")).toInt();
        } else if (!event.value(QLatin1String("bytes")).isNull()) {
            EXPECT_EQ(event.value(QLatin1String("total")).toInt(), s.image().size());
            EXPECT_GE(event.value(QLatin1String("bytes")).toDouble(), received);
            received = event.value(QLatin1String("bytes")).toDouble();
        }
    }
    EXPECT_EQ(received, s.image().size());
    EXPECT_EQ(written, 100);
}

TEST_F(CliUpdateTest, TheControlListChoosesHid)
{
    CliScenario &s = scenario();
    s.program.setControlList({s.model()}, {QStringLiteral("HID")});
    EXPECT_EQ(run({update}), 0);
    expectSucceeded("resetting");
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_EQ(s.program.runs(hidFlasher).size(), 2);
    EXPECT_TRUE(s.program.runs(usbFlasher).isEmpty());
}

TEST_F(CliUpdateTest, TheWriteTypeOfTheCommandLineOverridesTheControlList)
{
    CliScenario &s = scenario();
    EXPECT_EQ(run({update, QStringLiteral("--write-type"), QStringLiteral("hid")}), 0);
    expectSucceeded("resetting");
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_TRUE(s.program.runs(usbFlasher).isEmpty());
}

TEST_F(CliUpdateTest, AnIapModelIsProgrammedAndTheFlashersDoNotRun)
{
    CliScenario &s = scenario("DevMdq");
    EXPECT_EQ(run({update}), 0);
    expectSucceeded("programming");
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_TRUE(s.program.runs(usbFlasher).isEmpty());
    EXPECT_TRUE(s.program.runs(hidFlasher).isEmpty());
    EXPECT_EQ(stages(), (QStringList{QStringLiteral("fetching"), QStringLiteral("asking-programmer"),
                                     QStringLiteral("programming")}));
}

TEST_F(CliUpdateTest, AnIapModelAcceptsOnlyABinFile)
{
    CliScenario &s = scenario("DevMdq");
    s.withServer = false;
    const QString image = imageFile("mine.img", m_bytes);
    EXPECT_EQ(run({update, QStringLiteral("--file"), image}), 4);
    expectResult("failed", "asking-programmer", "image-refused", 4);
    expectUntouchedDevice();
    const QString bin = imageFile("mine.bin", m_bytes);
    EXPECT_EQ(run({update, QStringLiteral("--file"), bin}), 0);
    expectSucceeded("programming");
    EXPECT_EQ(s.burned(), m_bytes);
}

TEST_F(CliUpdateTest, ADeviceInItsBootloaderNeedsAModel)
{
    CliScenario &s = scenario();
    s.devices = {ModelOnBus::bootloader(s.model())};
    EXPECT_EQ(run({update}), 2);
    expectResult("cancelled", "idle", "no-model-chosen", 2);
    expectUntouchedDevice();
    EXPECT_TRUE(s.program.standardError().contains(QLatin1String("--model")));

    EXPECT_EQ(run({update, QStringLiteral("--model"), s.model()}), 0);
    expectSucceeded("resetting");
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_TRUE(s.bus.device(s.model()).value(QLatin1String("reports")).toArray().isEmpty());
}

TEST_F(CliUpdateTest, AFileIsWrittenWithoutAServer)
{
    CliScenario &s = scenario();
    s.withServer = false;
    const QString image = imageFile("mine.img", m_bytes);
    EXPECT_EQ(run({update, QStringLiteral("--file"), image}), 0);
    expectSucceeded("resetting");
    EXPECT_EQ(s.burned(), m_bytes);
    EXPECT_EQ(WholeFile::read(onThisSystem("mine.img")), m_bytes) << "the user's file stays";
    EXPECT_EQ(lastEvent().value(QLatin1String("sum")).toString(), sumOf(m_bytes));
}

TEST_F(CliUpdateTest, AFileMustHaveTheGivenSum)
{
    CliScenario &s = scenario();
    s.withServer = false;
    const QString image = imageFile("mine.img", m_bytes);
    EXPECT_EQ(run({update, QStringLiteral("--file"), image, QStringLiteral("--md5"), sumOf("another")}), 4);
    expectResult("failed", "idle", "checksum-mismatch", 4);
    expectUntouchedDevice();
    EXPECT_EQ(
        run({update, QStringLiteral("--file"), image, QStringLiteral("--md5"), sumOf(m_bytes).toUpper()}), 0);
    expectSucceeded("resetting");
    EXPECT_EQ(s.burned(), m_bytes);
}

TEST_F(CliUpdateTest, AMissingFileLeavesTheDeviceAlone)
{
    EXPECT_EQ(run({update, QStringLiteral("--file"), QStringLiteral("not/there.img")}), 4);
    expectResult("failed", "idle", "image-unreadable", 4);
    expectUntouchedDevice();
}

TEST_F(CliUpdateTest, WithoutARestartTheDeviceStaysInItsBootloader)
{
    CliScenario &s = scenario();
    EXPECT_EQ(run({update, QStringLiteral("--no-reset")}), 0);
    expectSucceeded("flashing");
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_EQ(s.bus.device(s.model()).value(QLatin1String("resets")).toInt(), 0);
    EXPECT_EQ(s.bus.device(s.model()).value(QLatin1String("state")).toString(), QStringLiteral("bootloader"));
}

TEST_F(CliUpdateTest, ItWaitsForADeviceThatIsConnectedLater)
{
    CliScenario &s = scenario();
    s.devices[0].insert(QStringLiteral("start"), QStringLiteral("absent"));
    start({update, QStringLiteral("--wait"), QStringLiteral("600")});
    ASSERT_TRUE(pollUntil([&] { return s.program.standardError().contains(QLatin1String("Waiting")); }));
    ASSERT_TRUE(s.bus.plug(s.model()));
    EXPECT_EQ(waitForExit(), 0);
    expectSucceeded("resetting");
    EXPECT_EQ(s.burned(), s.image());
}

TEST_F(CliUpdateTest, WithoutADeviceInTimeItGivesUp)
{
    CliScenario &s = scenario();
    s.devices[0].insert(QStringLiteral("start"), QStringLiteral("absent"));
    EXPECT_EQ(run({update}), 3);
    expectResult("failed", "idle", "no-device", 3);
    EXPECT_EQ(run({update, QStringLiteral("--wait"), QStringLiteral("1")}), 3);
    expectResult("failed", "idle", "no-device", 3);
}

TEST_F(CliUpdateTest, AnotherModelThanTheNamedOneIsLeftAlone)
{
    CliScenario &s = scenario();
    const QString other = QStringLiteral("DevMbu");
    s.devices.append(ModelOnBus::application(other));
    s.program.setControlList({s.model(), other}, {QStringLiteral("USB")});
    s.firmware.addModel(other, 5000);
    EXPECT_EQ(run({update, QStringLiteral("--model"), QStringLiteral("DevMdq")}), 3);
    expectUntouchedDevice();
    EXPECT_EQ(run({update, QStringLiteral("--model"), other}), 0);
    EXPECT_EQ(lastEvent().value(QLatin1String("model")).toString(), other);
    EXPECT_TRUE(s.bus.device(s.model()).value(QLatin1String("reports")).toArray().isEmpty());
    EXPECT_EQ(s.burned(other).size(), 5000);
}

} // namespace
