#include "devices/hid/HidScan.h"

#include "simulator/files/WholeFile.h"
#include "tests/common/FakeHidPort.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/common/RecordingReporter.h"
#include "tests/common/TextOnDisk.h"
#include "tests/devices/DeviceTestValues.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString col04Found =
    QStringLiteral("find DuoDevices at DevMar or DevMbs or DevMbr or DevMcb or DevMcc or DevMce or DevMbz");
const QString mi00Found = QStringLiteral("find DuoDevices at DevMbv , DevMah , DevMaj");
const QString notFound = QStringLiteral("not find DuoDevices!");

class HidScanTest : public testing::Test
{
protected:
    void choose(const char *name)
    {
        m_device.name = QString::fromUtf8(name);
        m_device.vendorId = model(name).vendorId;
        m_device.productId = model(name).productId;
    }
    void add(const char *name, const char *path, const char *markers = "")
    {
        m_port.add(model(name).vendorId, model(name).productId, path, QString::fromUtf8(markers));
    }
    void scan() { HidScan::run(m_port, m_device, m_reporter, logPath()); }
    QString logPath() const { return m_folder.filePath(QStringLiteral("log.txt")); }
    QByteArray logFile() const { return WholeFile::read(logPath(), "(no file)"); }
    void expectNothingOpened()
    {
        EXPECT_EQ(m_device.hidHandle, nullptr);
        EXPECT_TRUE(m_port.openPaths().isEmpty());
        EXPECT_EQ(m_reporter.logLines(), QStringList{notFound});
    }

    QTemporaryDir m_folder;
    FakeHidPort m_port;
    RecordingReporter m_reporter;
    RecordedDebugStream m_debug;
    ChosenDevice m_device;
};

TEST_F(HidScanTest, ACol04ModelIsReachedThroughTheInterfaceNamedCol04)
{
    choose("DevMbr");
    add("DevMbr", "mi_01&col01#x");
    add("DevMbr", "mi_01&Col04#x");
    add("DevMbr", "mi_01&Col05#x");
    scan();
    ASSERT_NE(m_device.hidHandle, nullptr);
    EXPECT_EQ(m_port.openPaths(), QByteArrayList{"mi_01&Col04#x"});
    EXPECT_EQ(m_port.askedPaths(), QByteArrayList{"mi_01&Col04#x"}) << "at most one interface is opened";
    EXPECT_EQ(m_reporter.logLines(), QStringList{col04Found});
}

TEST_F(HidScanTest, AnMi00ModelIsReachedThroughTheInterfaceNamedMi00)
{
    choose("DevMbx");
    add("DevMbx", "MI_01#x");
    add("DevMbx", "MI_00#x");
    scan();
    EXPECT_EQ(m_port.openPaths(), QByteArrayList{"MI_00#x"});
    EXPECT_EQ(m_reporter.logLines(), QStringList{mi00Found});
}

TEST_F(HidScanTest, ADevMahWhoseMi00PathIsInLowerCaseIsStillFound)
{
    choose("DevMah");
    add("DevMah", "\\\\?\\hid#vid_f104&pid_a009&mi_00#8&1");
    scan();
    EXPECT_NE(m_device.hidHandle, nullptr);
}

TEST_F(HidScanTest, ModelsOfEachListAreFoundByTheirOwnMarkerOnly)
{
    choose("DevMcw");
    add("DevMcw", "MI_00");
    scan();
    choose("DevMct");
    add("DevMct", "Col04");
    scan();
    EXPECT_EQ(m_device.hidHandle, nullptr);
    EXPECT_TRUE(m_port.askedPaths().isEmpty());
    EXPECT_EQ(m_reporter.logLines(), (QStringList{notFound, notFound}));
}

TEST_F(HidScanTest, AMarkerMadeFromThePositionCountsLikeOneInThePath)
{
    choose("DevMbr");
    add("DevMbr", "/dev/hidraw1", "MI_01&Col03");
    add("DevMbr", "/dev/hidraw2", "MI_01&Col04");
    scan();
    EXPECT_EQ(m_port.openPaths(), QByteArrayList{"/dev/hidraw2"});
}

TEST_F(HidScanTest, InterfacesOfOtherDevicesAreSkipped)
{
    choose("DevMah");
    add("DevMbx", "MI_00#other");
    m_port.add(m_device.vendorId, m_device.productId + 1, "MI_00#product");
    m_port.add(m_device.vendorId + 1, m_device.productId, "MI_00#vendor");
    scan();
    expectNothingOpened();
    EXPECT_EQ(logFile().count('\n'), 3) << "they are listed anyway";
}

TEST_F(HidScanTest, AModelInNeitherListOpensNothing)
{
    choose("DevMaa");
    add("DevMaa", "MI_00&Col04");
    scan();
    expectNothingOpened();
    EXPECT_TRUE(m_debug.lines().filter(QStringLiteral("duoDevstr")).isEmpty());
}

TEST_F(HidScanTest, AnInterfaceThatCannotBeOpenedIsSkipped)
{
    choose("DevMah");
    add("DevMah", "MI_00#first");
    add("DevMah", "MI_00#second");
    m_port.refuse("MI_00#first");
    scan();
    EXPECT_EQ(m_port.openPaths(), QByteArrayList{"MI_00#second"});
    EXPECT_EQ(m_reporter.logLines(), QStringList{mi00Found});
}

TEST_F(HidScanTest, AnInterfaceWithoutAPathIsSkippedEvenIfItsPositionMatches)
{
    choose("DevMah");
    add("DevMah", nullptr, "MI_00&Col01");
    scan();
    expectNothingOpened();
    EXPECT_TRUE(m_port.askedPaths().isEmpty());
}

TEST_F(HidScanTest, AnEmptyEnumerationIsLoggedOnce)
{
    choose("DevMah");
    scan();
    expectNothingOpened();
    EXPECT_EQ(logFile(), "(no file)");
}

TEST_F(HidScanTest, AnEarlierHandleIsKeptWhenNothingIsFound)
{
    choose("DevMah");
    add("DevMah", "MI_00");
    scan();
    const HidDevice *earlier = m_device.hidHandle.get();
    ASSERT_NE(earlier, nullptr);
    m_port.removeAll();
    scan();
    EXPECT_EQ(m_device.hidHandle.get(), earlier);
    EXPECT_EQ(m_port.openPaths().size(), 1);
}

TEST_F(HidScanTest, RepeatedScansDoNotAccumulateHandles)
{
    choose("DevMah");
    add("DevMah", "MI_00");
    for (int i = 0; i < 100; ++i)
        scan();
    EXPECT_EQ(m_port.askedPaths().size(), 100);
    EXPECT_EQ(m_port.openPaths().size(), 1);
}

TEST_F(HidScanTest, AHandleInUseStaysOpenWhenItIsReplaced)
{
    choose("DevMah");
    add("DevMah", "MI_00");
    scan();
    std::shared_ptr<HidDevice> writer = m_device.hidHandle;
    scan();
    EXPECT_EQ(m_port.openPaths().size(), 2);
    EXPECT_EQ(writer->write("abc"), 3);
    writer.reset();
    EXPECT_EQ(m_port.openPaths().size(), 1);
}

TEST_F(HidScanTest, EachInterfaceAddsALineToTheLogWithNoBlankBetweenPathAndItsValue)
{
    choose("DevMah");
    m_port.add(1, 65535, "one");
    m_port.add(2, 3, "two");
    scan();
    EXPECT_EQ(logFile(),
              textOnDisk("Found device: VID: 1 PID: 65535Path:one\nFound device: VID: 2 PID: 3Path:two\n"));
    EXPECT_EQ(m_debug.lines(), (QStringList{QStringLiteral("Found device: VID: 1 PID: 65535 Path: one"),
                                            QStringLiteral("Found device: VID: 2 PID: 3 Path: two")}));
}

TEST_F(HidScanTest, TheLogIsOnlyAppendedTo)
{
    choose("DevMah");
    m_port.add(1, 2, "one");
    scan();
    scan();
    EXPECT_EQ(logFile().count('\n'), 2);
}

TEST_F(HidScanTest, AnInterfaceThatIsOpenedEndsTheScanAndTheLines)
{
    choose("DevMah");
    add("DevMah", "MI_00");
    m_port.add(1, 2, "later");
    scan();
    EXPECT_EQ(logFile().count('\n'), 1);
    EXPECT_EQ(m_debug.lines().last(), QStringLiteral("duoDevstr: MI_00"));
}

TEST_F(HidScanTest, ALogThatCannotBeOpenedCausesAWarningAndTheScanContinues)
{
    choose("DevMah");
    add("DevMah", "MI_00");
    HidScan::run(m_port, m_device, m_reporter, m_folder.path());
    EXPECT_EQ(m_debug.warnings(), QStringList{QStringLiteral("Failed to open log.txt for appending.")});
    EXPECT_NE(m_device.hidHandle, nullptr);
}

TEST_F(HidScanTest, TheLoggedTextsNameModelsThatAreNotInTheLists)
{
    choose("DevMcw");
    add("DevMcw", "Col04");
    scan();
    EXPECT_EQ(m_reporter.logLines(), QStringList{col04Found});
    EXPECT_TRUE(col04Found.contains(QStringLiteral("DevMbz")));
    EXPECT_FALSE(col04Found.contains(QStringLiteral("DevMcw")));
}

} // namespace
