#include "simulator/time/RunningTime.h"
#include "tests/iap/IAPUpDateTest.h"

#include "iap/IapPortType.h"

#include <QFormLayout>
#include <QMetaMethod>
#include <QSignalSpy>

namespace {

using IAPUpDateFieldsTest = IAPUpDateTest;

const ToolSteps portsAndDevices = ToolStep::print("COM:COM3;COM: COM7;device: one;device: two;\n");

TEST_F(IAPUpDateFieldsTest, SignalsAndSlotsAreDeclaredInOrder)
{
    const char *const expected[] = {"sigAppendLog(TextWindow*,QString)",
                                    "iapFinished(bool)",
                                    "sigStartClicked()",
                                    "onPortTypeChanged(int)",
                                    "onStartClicked()",
                                    "onReadyOut()",
                                    "onFinished(int,QProcess::ExitStatus)"};
    const QMetaObject &meta = IAPUpDate::staticMetaObject;
    QStringList entries;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        entries.append(QString::fromLatin1(meta.method(i).methodSignature()));
        EXPECT_EQ(meta.method(i).methodType(), entries.size() <= 3 ? QMetaMethod::Signal : QMetaMethod::Slot);
    }
    QStringList wanted;
    for (const char *signature : expected)
        wanted.append(QString::fromLatin1(signature));
    EXPECT_EQ(entries, wanted);
}

TEST_F(IAPUpDateFieldsTest, ItIsAToolWindowOf320By260NamedIapUpDate)
{
    EXPECT_EQ(panel().windowTitle(), QStringLiteral("IAP UpDate"));
    EXPECT_EQ(panel().windowType(), Qt::Tool);
    EXPECT_EQ(panel().size(), QSize(320, 260));
    EXPECT_EQ(panel().objectName(), QStringLiteral("iapPanel"));
}

TEST_F(IAPUpDateFieldsTest, ItEndsStaleProgrammersAtItsBeginningAndAtItsEnd)
{
    const QString kill = QStringLiteral("/F|/IM|IAP_Programmer.exe");
    panel();
    EXPECT_EQ(kills(), QStringList{kill});
    m_panel.reset();
    EXPECT_EQ(kills(), (QStringList{kill, kill}));
}

TEST_F(IAPUpDateFieldsTest, ItEndsNoProgrammersWhileAnotherCopyOfTheProgramIsUpdating)
{
    UpdateLock::Hold elsewhere = m_host.takeElsewhere();
    panel();
    EXPECT_EQ(kills(), QStringList());
    m_panel.reset();
    EXPECT_EQ(kills(), QStringList());
    elsewhere.reset();
    panel();
    EXPECT_EQ(kills().size(), 1);
}

TEST_F(IAPUpDateFieldsTest, WhileAnotherCopyIsUpdatingTheProgrammerIsNotAskedAndALineSaysWhy)
{
    const QString why = QStringLiteral("log The IAP programmer is not asked for its ports while another copy "
                                       "of this program is updating a device.");
    getData(portsAndDevices);
    UpdateLock::Hold elsewhere = m_host.takeElsewhere();
    panel();
    EXPECT_EQ(m_host.takeEvents(), QStringList{why});
    EXPECT_EQ(items(portName()), QStringList());
    EXPECT_EQ(items(baudRate()), IapPortType::rates(QStringLiteral("USART")));
    panel().resetToUsb();
    EXPECT_EQ(m_host.takeEvents(), QStringList{why});
    panel().resetToUsb();
    EXPECT_EQ(m_host.takeEvents(), QStringList()) << "the monitor resets it each second";
    EXPECT_EQ(items(portName()), QStringList());
    EXPECT_EQ(runs(), QStringList());
    elsewhere.reset();
    portType().setCurrentText(QStringLiteral("USART"));
    EXPECT_EQ(items(portName()), (QStringList{QStringLiteral("COM3"), QStringLiteral("COM7")}));
    EXPECT_EQ(runs().size(), 1);
}

TEST_F(IAPUpDateFieldsTest, TheLastTaskkillRunsDuringTheShutdownButNotForLong)
{
    panel();
    ShutdownFlag::instance().raise();
    taskkill(ToolStep::hang());
    forgetRuns();
    const RunningTimer timer;
    m_panel.reset();
    EXPECT_LT(timer.elapsed(), 10000);
    EXPECT_EQ(kills().size(), 1);
}

TEST_F(IAPUpDateFieldsTest, WithoutATaskkillNothingIsLoggedAndNothingWaits)
{
    SystemTool::setFolderForTests(QStringLiteral("/nowhere"));
    const RecordedDebugStream debug;
    const RunningTimer timer;
    panel();
    m_panel.reset();
    EXPECT_LT(timer.elapsed(), 5000);
    EXPECT_TRUE(debug.warnings().isEmpty()) << debug.warnings().join(QLatin1Char('\n')).toStdString();
}

TEST_F(IAPUpDateFieldsTest, ItRequestsThePortsAtOnceAndShowsTheComPortsOfAUsart)
{
    getData(portsAndDevices);
    EXPECT_EQ(portType().currentText(), QStringLiteral("USART"));
    EXPECT_EQ(runs(), QStringList{QStringLiteral("GetData|-1|-1")});
    EXPECT_EQ(items(portName()), (QStringList{QStringLiteral("COM3"), QStringLiteral("COM7")}));
    EXPECT_EQ(items(baudRate()), IapPortType::rates(QStringLiteral("USART")));
    EXPECT_EQ(baudRate().currentText(), QStringLiteral("110"));
    EXPECT_EQ(m_host.takeEvents(),
              QStringList{
                  QStringLiteral("log IAP RunProcessGetData: COM:COM3;COM: COM7;device: one;device: two;")});
    EXPECT_EQ(m_host.logWindows, QList<TextWindow *>{&m_logWindow});
}

TEST_F(IAPUpDateFieldsTest, ItHasTheRequiredTextsAndInitialValues)
{
    EXPECT_EQ(items(portType()), IapPortType::names());
    EXPECT_EQ(find<QLineEdit>("iapAddress").text(), QString());
    EXPECT_EQ(find<QLineEdit>("iapAppStartAddress").text(), QStringLiteral("08004000"));
    EXPECT_EQ(crc().text(), QString());
    EXPECT_FALSE(crc().isChecked());
    EXPECT_EQ(download().text(), QStringLiteral("Download"));
    auto *layout = qobject_cast<QFormLayout *>(panel().layout());
    ASSERT_NE(layout, nullptr);
    QStringList labels;
    for (QWidget *field :
         QList<QWidget *>{&portType(), &portName(), &baudRate(), &find<QLineEdit>("iapAddress"),
                          &find<QLineEdit>("iapAppStartAddress"), &crc()})
        labels.append(qobject_cast<QLabel *>(layout->labelForField(field))->text());
    EXPECT_EQ(labels, (QStringList{QStringLiteral("Port Type: "), QStringLiteral("Port Name: "),
                                   QStringLiteral("Baud Rate: "), QStringLiteral("Address(0x): "),
                                   QStringLiteral("App Start Address(0x): "),
                                   QStringLiteral("CRC Verify after download: ")}));
    EXPECT_EQ(layout->rowCount(), 7);
}

TEST_F(IAPUpDateFieldsTest, WithPortTypeUsbThereAreDevicesAndNoBaudRate)
{
    getData(portsAndDevices);
    portType().setCurrentText(QStringLiteral("USB"));
    EXPECT_EQ(items(portName()), (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
    EXPECT_EQ(baudRate().count(), 0);
    EXPECT_EQ(baudRate().currentText(), QString());
    EXPECT_EQ(find<QLabel>("iapPortNameLabel").text(), QStringLiteral("USB Device: "));
    EXPECT_TRUE(crc().isEnabled());
    EXPECT_FALSE(find<QLineEdit>("iapAddress").isEnabled());
}

TEST_F(IAPUpDateFieldsTest, EachOtherTypeShowsComPortsAndItsOwnRates)
{
    getData(portsAndDevices);
    for (const char *type : {"CAN", "SPI", "I2C", "USART"}) {
        portType().setCurrentText(QLatin1String(type));
        EXPECT_EQ(portName().count(), 2) << type;
        EXPECT_EQ(portName().itemText(0), QStringLiteral("COM3")) << type;
        EXPECT_EQ(items(baudRate()), IapPortType::rates(QLatin1String(type))) << type;
        EXPECT_EQ(baudRate().currentIndex(), 0) << type;
    }
}

TEST_F(IAPUpDateFieldsTest, CanAndSpiKeepTheLabelAndTheCheckOfTheTypeBefore)
{
    portType().setCurrentText(QStringLiteral("USB"));
    portType().setCurrentText(QStringLiteral("CAN"));
    EXPECT_EQ(find<QLabel>("iapPortNameLabel").text(), QStringLiteral("USB Device: "));
    EXPECT_TRUE(crc().isEnabled());
    portType().setCurrentText(QStringLiteral("USART"));
    portType().setCurrentText(QStringLiteral("SPI"));
    EXPECT_EQ(find<QLabel>("iapPortNameLabel").text(), QStringLiteral("Port Name: "));
    EXPECT_FALSE(crc().isEnabled());
}

TEST_F(IAPUpDateFieldsTest, TheLabelOfI2cHasNoBlankAtItsEnd)
{
    portType().setCurrentText(QStringLiteral("I2C"));
    EXPECT_EQ(find<QLabel>("iapPortNameLabel").text(), QStringLiteral("Port Name:"));
    EXPECT_TRUE(find<QLineEdit>("iapAddress").isEnabled());
    EXPECT_TRUE(crc().isEnabled());
}

TEST_F(IAPUpDateFieldsTest, BothListsGoToTheDebugStreamUnderOneName)
{
    getData(portsAndDevices);
    const RecordedDebugStream debug;
    panel();
    EXPECT_EQ(debug.lines(), (QStringList{QStringLiteral("Ret: COM:COM3;COM: COM7;device: one;device: two;"),
                                          QStringLiteral("COMlist: COM3"), QStringLiteral("COMlist: COM7"),
                                          QStringLiteral("COMlist: one"), QStringLiteral("COMlist: two")}));
}

TEST_F(IAPUpDateFieldsTest, AMissingProgrammerLeavesTheListsEmptyAndLogsNothing)
{
    removeProgrammer();
    EXPECT_EQ(portName().count(), 0);
    EXPECT_EQ(baudRate().count(), 19);
    EXPECT_TRUE(m_host.events().isEmpty());
}

TEST_F(IAPUpDateFieldsTest, AProgrammerThatCrashesHasNotAnswered)
{
    getData(ToolStep::print("COM:COM3;") + ToolStep::crash());
    EXPECT_EQ(portName().count(), 0);
    EXPECT_TRUE(m_host.events().isEmpty());
}

TEST_F(IAPUpDateFieldsTest, AProgrammerThatFailsHasStillAnswered)
{
    getData(ToolStep::print("COM:COM3;") + ToolStep::printError("no\n") + ToolStep::exitWith(3));
    EXPECT_EQ(items(portName()), QStringList{QStringLiteral("COM3")});
    EXPECT_EQ(m_host.takeEvents(), QStringList{QStringLiteral("log IAP RunProcessGetData: COM:COM3;")});
}

TEST_F(IAPUpDateFieldsTest, ResetToUsbChoosesTheFirstDeviceAndTicksTheCheck)
{
    getData(portsAndDevices);
    makePanel();
    panel().resetToUsb();
    EXPECT_EQ(portType().currentText(), QStringLiteral("USB"));
    EXPECT_TRUE(crc().isChecked());
    EXPECT_EQ(runs().size(), 1);
    portName().setCurrentIndex(1);
    crc().setChecked(false);
    panel().resetToUsb();
    EXPECT_EQ(portName().currentIndex(), 0);
    EXPECT_TRUE(crc().isChecked());
    EXPECT_EQ(runs().size(), 1) << "the type has not changed, so the programmer is not asked";
}

TEST_F(IAPUpDateFieldsTest, ThePortsAreRequestedWithTheIdsThatWereSet)
{
    makePanel();
    panel().setDeviceIds(0xA05A, 0xF113);
    panel().resetToUsb();
    EXPECT_EQ(runs(), QStringList{QStringLiteral("GetData|f113|a05a")});
}

TEST_F(IAPUpDateFieldsTest, ItIsDockedToTheTopRightCornerOfItsParentAndFollowsIt)
{
    QWidget ground;
    ground.setGeometry(50, 60, 400, 300);
    EXPECT_EQ(panel(&ground).pos(), ground.geometry().topRight());
    const auto followsFrom = [&](const QPoint &before) {
        return panel().pos() != before && panel().pos() == ground.geometry().topRight();
    };
    ground.show();
    QPoint before = panel().pos();
    ground.move(120, 30);
    EXPECT_TRUE(processEventsUntil([&] { return followsFrom(before); }));
    before = panel().pos();
    ground.resize(500, 310);
    EXPECT_TRUE(processEventsUntil([&] { return followsFrom(before); }));
    m_panel.reset();
}

TEST_F(IAPUpDateFieldsTest, ClosingItUnticksTheBoxAndClosesIt)
{
    makePanel();
    panel().show();
    EXPECT_TRUE(panel().close());
    EXPECT_FALSE(panel().isVisible());
    EXPECT_EQ(m_host.takeEvents(), QStringList{QStringLiteral("untick")});
}

TEST_F(IAPUpDateFieldsTest, ADisabledFieldLooksDisabledEvenInTheMainWindow)
{
    QWidget ground;
    ground.setStyleSheet(QStringLiteral("background-color: rgb(240,240,240);"));
    ground.show();
    panel(&ground).show();
    const auto backgroundOf = [this](const char *name) {
        QWidget &field = find<QLineEdit>(name);
        return field.grab().toImage().pixelColor(field.width() / 2, field.height() - 5);
    };
    EXPECT_EQ(backgroundOf("iapAppStartAddress"), QColor(Qt::white));
    EXPECT_NE(backgroundOf("iapAddress"), QColor(Qt::white));
    EXPECT_NE(backgroundOf("iapAddress"), QColor(240, 240, 240));
    m_panel.reset();
}

TEST_F(IAPUpDateFieldsTest, EveryWidgetHasAName)
{
    for (const char *name : {"iapPortType", "iapPortName", "iapBaudRate", "iapAddress", "iapAppStartAddress",
                             "iapCrcVerify", "iapPortNameLabel", "iapDownload"})
        EXPECT_NE(panel().findChild<QWidget *>(QLatin1String(name)), nullptr) << name;
}

} // namespace
