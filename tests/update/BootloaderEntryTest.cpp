#include "update/BootloaderEntry.h"

#include "tests/common/FakeHidPort.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/common/RecordingReporter.h"

#include <gtest/gtest.h>

namespace {

class BootloaderEntryTest : public testing::Test
{
protected:
    BootloaderEntryTest()
    {
        m_device.name = QStringLiteral("M1");
        m_device.vendorId = 0xF101;
        m_device.productId = 0xA001;
        m_port.setOpenErrorText(QStringLiteral("no device"));
    }
    void plugIn() { m_port.add(0xF101, 0xA001, "main"); }
    void openDuoHandle()
    {
        m_device.hidPathFlag = 1;
        m_device.hidHandle = m_port.openPath("duo");
    }
    bool send(ReportLayout layout = ReportLayout::WithReportId)
    {
        return sendUpdateModeReport(m_device, m_port, layout, m_reporter);
    }
    /// Returns the events of a run that reached the write.
    static QStringList written(const QString &result, bool opened)
    {
        QStringList events{QStringLiteral("check 0"), QStringLiteral("log hid_open...")};
        if (!opened)
            events.append(QStringLiteral("log one open device err"));
        events << QStringLiteral("log open device done") << QStringLiteral("log start hid_write...")
               << QStringLiteral("log ") + result;
        return events;
    }

    ChosenDevice m_device;
    FakeHidPort m_port;
    RecordingReporter m_reporter;
    const RecordedDebugStream m_debug;
};

TEST_F(BootloaderEntryTest, WithoutADeviceNameNothingIsOpened)
{
    plugIn();
    m_device.name.clear();
    EXPECT_FALSE(send());
    EXPECT_EQ(m_reporter.events(),
              (QStringList{QStringLiteral("check 0"), QStringLiteral("log return becu no pvid!")}));
    EXPECT_EQ(m_debug.lines(), QStringList{QStringLiteral("无pvid")});
    EXPECT_TRUE(m_port.askedPaths().isEmpty());
}

TEST_F(BootloaderEntryTest, AnOrdinaryDeviceIsWrittenOnceAndClosed)
{
    plugIn();
    EXPECT_TRUE(send());
    EXPECT_EQ(m_reporter.events(), written(QStringLiteral("write res:513CommandKind:1IsDuoDev:2"), true));
    ASSERT_EQ(m_port.writes().size(), 1);
    EXPECT_EQ(m_port.writes().first().path, "main");
    EXPECT_EQ(m_port.writes().first().report, updateModeReport(ReportLayout::WithReportId));
    EXPECT_TRUE(m_port.openPaths().isEmpty());
    EXPECT_EQ(m_debug.lines(), (QStringList{QStringLiteral("61697 ??? 40961"), QStringLiteral("res: 513 "),
                                            QStringLiteral("send UpdateMode successfully")}));
}

TEST_F(BootloaderEntryTest, OnWindows7TheCommandKindIs2)
{
    plugIn();
    EXPECT_TRUE(send(ReportLayout::Shifted));
    EXPECT_EQ(m_port.writes().value(0).report, updateModeReport(ReportLayout::Shifted));
    EXPECT_EQ(m_reporter.logLines().last(), QStringLiteral("write res:513CommandKind:2IsDuoDev:2"));
}

TEST_F(BootloaderEntryTest, IdsAreTruncatedTo16Bits)
{
    plugIn();
    m_device.vendorId = 0x5F101;
    m_device.productId = 0x7A001;
    EXPECT_TRUE(send());
    EXPECT_EQ(m_debug.lines().first(), QStringLiteral("389377 ??? 499713"));
}

TEST_F(BootloaderEntryTest, ADuoDeviceIsWrittenThroughItsOwnHandleEvenWhenTheOpenFailed)
{
    openDuoHandle();
    EXPECT_TRUE(send());
    EXPECT_EQ(m_reporter.events(), written(QStringLiteral("write res:513CommandKind:1IsDuoDev:1"), false));
    EXPECT_EQ(m_port.writes().value(0).path, "duo");
    EXPECT_TRUE(m_debug.lines().contains(QStringLiteral("open device err")));
}

TEST_F(BootloaderEntryTest, TheDuoHandleStaysOpenAndTheOtherOneIsClosed)
{
    plugIn();
    openDuoHandle();
    EXPECT_TRUE(send());
    EXPECT_EQ(m_port.askedPaths(), (QByteArrayList{"duo", "main"}));
    EXPECT_EQ(m_port.openPaths(), QByteArrayList{"duo"});
    ASSERT_EQ(m_port.writes().size(), 1);
    EXPECT_EQ(m_port.writes().first().path, "duo");
}

TEST_F(BootloaderEntryTest, ADuoHandleWithoutTheDuoFlagIsNotUsed)
{
    plugIn();
    openDuoHandle();
    m_device.hidPathFlag = 0;
    EXPECT_TRUE(send());
    EXPECT_EQ(m_port.writes().value(0).path, "main");
    EXPECT_EQ(m_reporter.logLines().last(), QStringLiteral("write res:513CommandKind:1IsDuoDev:2"));
}

TEST_F(BootloaderEntryTest, AMissingDuoHandleIsAFailedWriteWithTheTextForNoDevice)
{
    plugIn();
    m_device.hidPathFlag = 1;
    EXPECT_FALSE(send());
    EXPECT_EQ(m_reporter.events(),
              written(QStringLiteral("write res:-1no deviceCommandKind:1IsDuoDev:1"), true));
    EXPECT_TRUE(m_port.writes().isEmpty());
}

TEST_F(BootloaderEntryTest, AMissingDuoHandleHasAnErrorTextEvenIfNoOpenHasFailed)
{
    plugIn();
    m_port.setOpenErrorText(QString());
    m_device.hidPathFlag = 1;
    EXPECT_FALSE(send());
    EXPECT_EQ(m_reporter.logLines().last(),
              QStringLiteral("write res:-1The device's HID interface is not open."
                             "CommandKind:1IsDuoDev:1"));
}

TEST_F(BootloaderEntryTest, AnOrdinaryDeviceThatCannotBeOpenedIsAFailedWrite)
{
    EXPECT_FALSE(send());
    EXPECT_EQ(m_reporter.events(),
              written(QStringLiteral("write res:-1no deviceCommandKind:1IsDuoDev:2"), false));
}

TEST_F(BootloaderEntryTest, AWriteOfMinusOneTakesTheErrorTextOfItsHandle)
{
    plugIn();
    m_port.answerWrites(-1, QStringLiteral("broken pipe"));
    EXPECT_FALSE(send());
    EXPECT_EQ(m_reporter.events(),
              written(QStringLiteral("write res:-1broken pipeCommandKind:1IsDuoDev:2"), true));
    EXPECT_TRUE(m_port.openPaths().isEmpty());
    EXPECT_FALSE(m_debug.lines().contains(QStringLiteral("send UpdateMode successfully")));
}

TEST_F(BootloaderEntryTest, AWriteOfNothingFailsWithoutAnErrorText)
{
    plugIn();
    m_port.answerWrites(0, QStringLiteral("stale text"));
    EXPECT_FALSE(send());
    EXPECT_EQ(m_reporter.logLines().last(), QStringLiteral("write res:0CommandKind:1IsDuoDev:2"));
    EXPECT_EQ(m_port.writes().size(), 1);
}

TEST_F(BootloaderEntryTest, AShortWriteCountsAsSent)
{
    plugIn();
    m_port.answerWrites(1);
    EXPECT_TRUE(send());
    EXPECT_EQ(m_reporter.logLines().last(), QStringLiteral("write res:1CommandKind:1IsDuoDev:2"));
}

} // namespace
