#include "app/bringToForeground.h"

#include "iap/IAPUpDate.h"
#include "simulator/files/WholeFile.h"
#include "support/log/LogFile.h"
#include "support/process/ToolRun.h"
#include "tests/common/EventWait.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/common/ScriptedTools.h"
#include "widgets/BackgroundWidget.h"
#include "widgets/WidgetTab1.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMetaMethod>
#include <QPointer>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

/// Makes the main widget inside its background window, in a working directory of its own.
class bringToForegroundTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_before = QDir::currentPath();
        ASSERT_TRUE(QDir::setCurrent(m_folder.path()));
        m_background = std::make_unique<BackgroundWidget>(false);
        m_main = new bringToForeground(m_background.get(), false, false, QString());
        m_main->show();
    }
    void TearDown() override
    {
        m_background.reset();
        QDir::setCurrent(m_before);
    }

    template <typename Widget>
    Widget *find(const char *name) const
    {
        return m_main->findChild<Widget *>(QLatin1String(name));
    }
    IAPUpDate *iapPanel() const { return m_background->findChild<IAPUpDate *>(); }
    QTimer *checkTimer() const { return m_main->findChild<QTimer *>(); }
    QStringList logLines() const
    {
        QCoreApplication::sendPostedEvents(m_main, QEvent::MetaCall);
        QFile file(LogFile::updateLogPath());
        if (!file.open(QIODevice::ReadOnly))
            return {};
        QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
        for (QString &line : lines)
            line.remove(0, 22);
        return lines;
    }

    QString m_before;
    QTemporaryDir m_folder;
    std::unique_ptr<BackgroundWidget> m_background;
    bringToForeground *m_main = nullptr;
};

TEST_F(bringToForegroundTest, SignalsAndSlotsKeepTheirOrder)
{
    const char *const expected[] = {"sigSetBtnEnable(QPushButton*,bool)",
                                    "sigStartCheckDeviceQTimer(bool)",
                                    "sigSetprogressBarValue(int)",
                                    "sigAppendLog(TextWindow*,QString)",
                                    "sigSetStateTitle(QString)",
                                    "onSetBtnEnable(QPushButton*,bool)",
                                    "onStartCheckDeviceQTimer(bool)",
                                    "onSetprogressBarValue(int)",
                                    "onSetStateTitle(QString)",
                                    "appendToFile(QString,QString)",
                                    "AppendLog(TextWindow*,QString)",
                                    "isDeviceOn(QJsonObject)",
                                    "GetDefaultImagePath()",
                                    "InitUseWirteType()",
                                    "FindDevForJson(QString)",
                                    "parseDevices(QByteArray,QString)",
                                    "onIAPStateChanged(int)"};
    const QMetaObject *meta = m_main->metaObject();
    QStringList entries;
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        entries.append(QString::fromLatin1(method.methodSignature()));
        EXPECT_EQ(method.methodType(), entries.size() <= 5 ? QMetaMethod::Signal : QMetaMethod::Slot);
    }
    QStringList wanted;
    for (const char *signature : expected)
        wanted.append(QString::fromLatin1(signature));
    EXPECT_EQ(entries, wanted);
}

TEST_F(bringToForegroundTest, EnablingSomeOtherButtonChangesTheStartButton)
{
    QPushButton other;
    emit m_main->sigSetBtnEnable(&other, false);
    EXPECT_FALSE(find<QPushButton>("startButton")->isEnabled());
    EXPECT_TRUE(other.isEnabled());
}

TEST_F(bringToForegroundTest, LogLinesAreQueuedEvenFromTheGuiThread)
{
    const int before = logLines().size();
    m_main->log(QStringLiteral("later"));
    const QByteArray written = WholeFile::read(LogFile::updateLogPath());
    EXPECT_FALSE(written.isEmpty());
    EXPECT_FALSE(written.contains("later"));
    EXPECT_EQ(logLines().size(), before + 1);
}

TEST_F(bringToForegroundTest, ItIsCatchingUpUntilEveryLoggedLineIsWritten)
{
    logLines();
    EXPECT_FALSE(m_main->isCatchingUp());
    m_main->log(QStringLiteral("one"));
    emit m_main->sigAppendLog(nullptr, QStringLiteral("for no window"));
    EXPECT_TRUE(m_main->isCatchingUp());
    EXPECT_TRUE(logLines().contains(QStringLiteral("one")));
    EXPECT_FALSE(m_main->isCatchingUp());
}

TEST_F(bringToForegroundTest, TheOtherSignalsActAtOnceOnTheGuiThread)
{
    emit m_main->sigSetStateTitle(QStringLiteral("a title"));
    EXPECT_EQ(find<QLabel>("stateTitleLabel")->text(), QStringLiteral("a title"));
    emit m_main->sigSetprogressBarValue(42);
    EXPECT_EQ(find<QProgressBar>("progressBar")->value(), 42);
    emit m_main->sigStartCheckDeviceQTimer(false);
    EXPECT_FALSE(checkTimer()->isActive());
    emit m_main->sigStartCheckDeviceQTimer(true);
    EXPECT_TRUE(checkTimer()->isActive());
    EXPECT_EQ(checkTimer()->interval(), 1000);
}

TEST_F(bringToForegroundTest, AnEntryWithoutIsOnIsOff)
{
    EXPECT_FALSE(m_main->isDeviceOn({}));
    EXPECT_TRUE(m_main->isDeviceOn({{QStringLiteral("is_on"), true}}));
}

TEST_F(bringToForegroundTest, StoppingActsDirectlyAndStartingThroughSignals)
{
    QSignalSpy timerSignals(m_main, &bringToForeground::sigStartCheckDeviceQTimer);
    QSignalSpy buttonSignals(m_main, &bringToForeground::sigSetBtnEnable);
    find<QProgressBar>("progressBar")->setValue(50);

    m_main->StopCheckConnectTimer();
    EXPECT_FALSE(checkTimer()->isActive());
    EXPECT_FALSE(find<QPushButton>("startButton")->isEnabled());
    EXPECT_EQ(find<QProgressBar>("progressBar")->value(), 0);
    EXPECT_TRUE(timerSignals.isEmpty());
    EXPECT_TRUE(buttonSignals.isEmpty());

    m_main->StartCheckConnectTimer();
    EXPECT_TRUE(checkTimer()->isActive());
    EXPECT_TRUE(find<QPushButton>("startButton")->isEnabled());
    EXPECT_EQ(timerSignals.size(), 1);
    EXPECT_EQ(buttonSignals.size(), 1);
    EXPECT_TRUE(logLines().contains(QStringLiteral("StopCheckConnectTimer.")));
    EXPECT_TRUE(logLines().contains(QStringLiteral("StartCheckConnectTimer.")));
}

TEST_F(bringToForegroundTest, TheLogBeginsWithTheSystemsDescriptionFollowedByTheConstructorsLines)
{
    const QStringList lines = logLines();
    ASSERT_GE(lines.size(), 6);
    EXPECT_TRUE(lines.at(0).contains(QCoreApplication::applicationDirPath()));
    EXPECT_EQ(
        lines.mid(1, 5),
        (QStringList{QStringLiteral("not find default img file!"), QStringLiteral("IsZN58UseMe?: false"),
                     QStringLiteral("create IAPUpDate Mode..."), QStringLiteral("IAP Process not exists.!"),
                     QStringLiteral("create IAPUpDate Mode done.")}));
}

TEST_F(bringToForegroundTest, OnlyAFullyTickedBoxShowsTheIapPanel)
{
    const IAPUpDate *panel = iapPanel();
    EXPECT_FALSE(panel->isVisible());
    m_main->onIAPStateChanged(2);
    EXPECT_TRUE(panel->isVisible());
    m_main->onIAPStateChanged(1);
    EXPECT_FALSE(panel->isVisible());
    find<QCheckBox>("iapBox")->setChecked(true);
    EXPECT_TRUE(panel->isVisible());
    find<QCheckBox>("iapBox")->setChecked(false);
    EXPECT_FALSE(panel->isVisible());
}

TEST_F(bringToForegroundTest, ClosingTheIapPanelUnticksItsBox)
{
    find<QCheckBox>("iapBox")->setChecked(true);
    iapPanel()->close();
    EXPECT_FALSE(find<QCheckBox>("iapBox")->isChecked());
    EXPECT_FALSE(iapPanel()->isVisible());
}

TEST_F(bringToForegroundTest, TheIapPanelsLinesAreWrittenAtOnceUnlikeTheOthers)
{
    logLines();
    m_main->log(QStringLiteral("in the queue"));
    IAPUpDate *panel = iapPanel();
    emit panel->sigAppendLog(nullptr, QStringLiteral("for no window"));
    panel->onFinished(7, QProcess::NormalExit);
    const QByteArray written = WholeFile::read(LogFile::updateLogPath());
    EXPECT_TRUE(written.contains("IAP finished, exitCode=7\n"));
    EXPECT_FALSE(written.contains("in the queue"));
}

TEST_F(bringToForegroundTest, TheIapPanelIsDestroyedBeforeTheMainWidgetAndTheLastLinesAreWritten)
{
    logLines();
    const QPointer<IAPUpDate> panel = iapPanel();
    QObject::connect(panel.data(), &QObject::destroyed,
                     [this] { m_main->log(QStringLiteral("a last line")); });
    delete m_main;
    EXPECT_TRUE(panel.isNull());
    EXPECT_NE(m_background, nullptr);
    EXPECT_TRUE(WholeFile::read(LogFile::updateLogPath()).contains("a last line"));
}

TEST_F(bringToForegroundTest, NothingIsBeingWrittenBeforeTheProgrammerRuns)
{
    EXPECT_FALSE(m_main->isWriting());
}

TEST_F(bringToForegroundTest, AppendToFileWritesItsContentWithoutATimeStamp)
{
    m_main->appendToFile(QStringLiteral("other.txt"), QStringLiteral("plain"));
    EXPECT_EQ(WholeFile::read(QStringLiteral("other.txt")), "plain\n");
}

TEST_F(bringToForegroundTest, WithoutAnImageTheDefaultPathIsTheFolder)
{
    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/qmake/");
    EXPECT_EQ(m_main->GetDefaultImagePath(), folder);
    EXPECT_EQ(find<QLineEdit>("firmwareFileEdit")->text(), folder);
}

TEST_F(bringToForegroundTest, TheConstructorReportsItsStepsInOrder)
{
    QStringList debugLines;
    {
        const RecordedDebugStream debug;
        BackgroundWidget background(false);
        new bringToForeground(&background, false, false, QString());
        debugLines = debug.lines();
    }
    int last = -1;
    for (const QString &beginning :
         {QStringLiteral("QSslSocket= "), QStringLiteral("true "), QStringLiteral("SSL is supported!"),
          QStringLiteral("删除临时固件文件"),
          QStringLiteral("当前进程所在文件夹路径: ") + QCoreApplication::applicationDirPath(),
          QStringLiteral("libusb_initRET: 0"), QStringLiteral("InitUseWirteType..."),
          QStringLiteral("Failed to open file"), QStringLiteral("Failed to open file: dev json.!"),
          QStringLiteral("Window position on screen: QPoint("), QStringLiteral("指定的路径无效!")}) {
        int at = last + 1;
        while (at < debugLines.size() && !debugLines.at(at).startsWith(beginning))
            ++at;
        ASSERT_LT(at, debugLines.size()) << "missing or out of order: " << beginning.toStdString();
        last = at;
    }
}

TEST_F(bringToForegroundTest, OfTwoImagesTheFirstByNameWithoutRegardToCaseIsTheDefault)
{
    ASSERT_TRUE(QDir(m_folder.path()).mkpath(QStringLiteral("qmake")));
    for (const char *name : {"b.img", "A.img"})
        ASSERT_TRUE(QFile(m_folder.filePath(QLatin1String("qmake/") + QLatin1String(name)))
                        .open(QIODevice::WriteOnly));
    m_main->GetDefaultImagePath(m_folder.path());
    EXPECT_EQ(m_main->GetDefaultImagePath(), m_folder.filePath(QStringLiteral("qmake/A.img")));
    EXPECT_TRUE(logLines().contains(QStringLiteral("find default img file")));
}

TEST_F(bringToForegroundTest, TheHiddenGestureShowsTheFileRowPermanently)
{
    EXPECT_FALSE(find<QLineEdit>("firmwareFileEdit")->isVisibleTo(m_main));
    m_main->enterLocalFileMode();
    m_main->enterLocalFileMode();
    EXPECT_TRUE(find<QLineEdit>("firmwareFileEdit")->isVisibleTo(m_main));
    EXPECT_TRUE(find<QPushButton>("chooseFileButton")->isVisibleTo(m_main));
}

TEST_F(bringToForegroundTest, SettingThePictureLevelEmitsASignalAndChangesNothing)
{
    auto *page = m_main->findChild<WidgetTab1 *>(QStringLiteral("flashingPage"));
    ASSERT_NE(page, nullptr);
    const QImage before = page->grab().toImage();
    const QSignalSpy announced(page, &WidgetTab1::sigSetPicJD);
    m_main->setPictureLevel(100.0);
    m_main->repaintPicture();
    QCoreApplication::processEvents();
    ASSERT_EQ(announced.size(), 1);
    EXPECT_EQ(announced.first().first().toDouble(), 100.0);
    EXPECT_EQ(page->grab().toImage(), before) << "Intentional: nothing is connected to the signal.";
}

TEST_F(bringToForegroundTest, WithTheTimerStoppedTheStatusStaysAsItIs)
{
    m_main->onStartCheckDeviceQTimer(false);
    auto *status = find<QLabel>("statusLabel");
    status->setText(QStringLiteral("frozen"));
    QTest::qWait(1300);
    EXPECT_EQ(status->text(), QStringLiteral("frozen"));
}

TEST_F(bringToForegroundTest, APressOfStartDuringAToolRunTakesEffectAfterwards)
{
    const QString line = QStringLiteral("click UpdateBtn ERROR - Not Check Dev!");
    ScriptedTools tools;
    tools.write(QStringLiteral("tool"), tools.pause());
    bool wasWaiting = false;
    QTimer::singleShot(0, m_main, [&] {
        wasWaiting = isWaitingForTool();
        find<QPushButton>("startButton")->click();
        find<QPushButton>("startButton")->click();
        EXPECT_FALSE(logLines().contains(line));
        tools.letGoOn();
    });
    runToolToEnd(tools.program(QStringLiteral("tool")), {}, eventLimitMs);
    EXPECT_TRUE(wasWaiting);
    EXPECT_FALSE(logLines().contains(line));
    EXPECT_TRUE(processEventsUntil([&] { return logLines().contains(line); }));
    QCoreApplication::processEvents();
    EXPECT_EQ(logLines().count(line), 1);
}

TEST_F(bringToForegroundTest, APressOfStartIsDroppedIfTheButtonIsDisabledAfterwards)
{
    ScriptedTools tools;
    tools.write(QStringLiteral("tool"), tools.pause());
    QTimer::singleShot(0, m_main, [&] {
        find<QPushButton>("startButton")->click();
        m_main->StopCheckConnectTimer();
        tools.letGoOn();
    });
    runToolToEnd(tools.program(QStringLiteral("tool")), {}, eventLimitMs);
    QCoreApplication::processEvents();
    m_main->StartCheckConnectTimer();
    QCoreApplication::processEvents();
    EXPECT_FALSE(logLines().contains(QStringLiteral("click UpdateBtn ERROR - Not Check Dev!")));
}

} // namespace
