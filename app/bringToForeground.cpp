#include "app/bringToForeground.h"

#include "app/LibraryWarnings.h"
#include "app/LocaleCodec.h"
#include "app/PanelImageCheck.h"
#include "app/SystemReport.h"
#include "app/window/ConnectionDisplay.h"
#include "app/window/MainWindowLayout.h"
#include "app/window/MainWindowLook.h"
#include "checks/Texts.h"
#include "download/FileDownloaderHTTP.h"
#include "download/ThreadFileDownloader.h"
#include "iap/IAPUpDate.h"
#include "support/LanguageUtilities.h"
#include "support/log/Diagnostics.h"
#include "support/log/LogFile.h"
#include "support/process/ToolRun.h"
#include "update/BootloaderEntry.h"
#include "update/LocalFiles.h"
#include "widgets/CustomComboBox.h"
#include "widgets/TextWindow.h"
#include "widgets/WidgetTab1.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>

bringToForeground::bringToForeground(QWidget *parent, bool isZN58Mode, bool isTessilonixMode,
                                     const QString &wantedModelName)
    : QWidget(parent)
{
    initialiseState({isZN58Mode, isTessilonixMode, wantedModelName});
    initialiseLanguage();
    SystemReport::writeTlsVersions();
    connectSignals();
    qDebug() << "删除临时固件文件";
    QFile::remove(m_paths.applicationDir + QLatin1String("/tmp/dev.img"));
    qDebug().noquote() << "当前进程所在文件夹路径:" << m_paths.applicationDir;
    initialiseDeviceLibraries();
    setLocaleCodec();
    MainWindowLayout::buildFlashingPage(this, this, m_widgets);
    InitUseWirteType();
    buildWriteTypeBox();
    buildInterface();
    createMonitor();
    createLogWindow();
    GetDefaultImagePath(m_paths.applicationDir);
    connect(m_widgets.chooseFileButton, &QPushButton::clicked, this, [this] { m_image->browse(this); });
    m_access.checkAtStart(m_paths.applicationDir, *m_logWindow, *m_checkTimer);
    createDownloaders();
    connectControls();
    if (m_launch.isAutomatic())
        MainWindowLayout::applyAutomaticMode(m_widgets);
    // Show the window before the panel is complete: its constructor waits for the programmer without a limit.
    QTimer::singleShot(0, this, &QWidget::show);
    createIapPanel();
    LibraryWarnings::askToQuitAfterFailure(m_libraries);
}

bringToForeground::~bringToForeground()
{
    delete m_iapPanel;
    // Deliver the last queued log lines while this object can still take them.
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
}

void bringToForeground::initialiseState(const LaunchOptions &launch)
{
    setObjectName(QStringLiteral("bringToForeground"));
    m_launch = launch;
    m_paths = ProgramPaths::update();
}

void bringToForeground::initialiseLanguage()
{
    LanguageUtilities::instance().setLanguage(SystemReport::isCountryChina() ? QStringLiteral("zh_CN")
                                                                             : QStringLiteral("en"));
    Texts::setLanguage(Texts::languageOfSystem());
}

void bringToForeground::connectSignals()
{
    qRegisterMetaType<TextWindow *>("TextWindow*");
    qRegisterMetaType<QPushButton *>("QPushButton*");
    connectLog();
    connect(this, &bringToForeground::sigSetStateTitle, this, &bringToForeground::onSetStateTitle);
    connectControlSignals();
}

void bringToForeground::connectLog()
{
    using Self = bringToForeground;
    const auto countLine = [this] {
        ++m_queuedLines;
    };
    const auto forgetLine = [this] {
        --m_queuedLines;
    };
    connect(this, &Self::sigAppendLog, this, countLine, Qt::DirectConnection);
    connect(this, &Self::sigAppendLog, this, &Self::AppendLog, Qt::QueuedConnection);
    // Connected after AppendLog: queued calls arrive in the order of their connections.
    connect(this, &Self::sigAppendLog, this, forgetLine, Qt::QueuedConnection);
}

void bringToForeground::connectControlSignals()
{
    using Self = bringToForeground;
    connect(this, &Self::sigSetBtnEnable, this, &Self::onSetBtnEnable);
    connect(this, &Self::sigStartCheckDeviceQTimer, this, &Self::onStartCheckDeviceQTimer);
    connect(this, &Self::sigSetprogressBarValue, this, &Self::onSetprogressBarValue);
}

void bringToForeground::initialiseDeviceLibraries()
{
    LibraryWarnings::initialise(m_libraries);
    m_usb = makeLibusbBus(m_libraries.usbReady());
    m_hid = makeHidapiPort();
}

void bringToForeground::buildWriteTypeBox()
{
    MainWindowLayout::buildWriteTypeBox(this, m_writeType.usb, m_writeType.hid, m_widgets);
    m_choices.setWriteType(m_widgets.writeTypeBox->currentText());
    connect(m_widgets.writeTypeBox, &QComboBox::currentTextChanged, this,
            [this](const QString &text) { m_choices.setWriteType(text); });
}

void bringToForeground::buildInterface()
{
    const MainWindowLayout::Callbacks callbacks{[this](int state) {
        onIAPStateChanged(state);
    }};
    MainWindowLayout::buildRest(this, SystemReport::isCountryChina(), callbacks, m_widgets);
    m_choices.setRestartCheckable(m_widgets.restartBox->isCheckable());
    m_image =
        std::make_unique<ImageChoice>(m_choices, *m_widgets.firmwareFileEdit, ProgramPaths::lastDirFile());
}

void bringToForeground::createMonitor()
{
    m_monitor = std::make_unique<ConnectionMonitor>(
        ConnectionMonitor::Dependencies{*m_usb, *m_hid, *this, &Diagnostics::writeStandardOutput,
                                        ControlledDeviceList::path(m_paths.applicationDir),
                                        LogFile::interfaceLogPath(), LogFile::updateLogPath()},
        m_launch);
    m_checkTimer = new QTimer(this);
    connect(m_checkTimer, &QTimer::timeout, this, &bringToForeground::checkConnection);
    m_checkTimer->start(1000);
}

void bringToForeground::createLogWindow()
{
    m_logWindow = std::make_unique<TextWindow>();
    m_logWindow->setLogCheckBox(m_widgets.logBox);
    MainWindowLook::placeBelow(*this, *m_logWindow);
    // Called directly, so that this is the first line of the log that support reads.
    AppendLog(m_logWindow.get(), SystemReport::describe());
}

void bringToForeground::createDownloaders()
{
    m_downloader = new FileDownloaderHTTP(this, this);
    m_segmentWorker = std::make_unique<ThreadFileDownloader>(nullptr, m_widgets.stateTitleLabel);
    connect(m_segmentWorker.get(), &ThreadFileDownloader::setStateLabel, &m_titleAnnouncer,
            &Announcer::announce);
    m_updates = std::make_unique<UpdateStarter>(
        UpdateStarter::Dependencies{*this, m_session, m_choices, *this, m_paths, m_launch, *m_downloader,
                                    *m_segmentWorker, parentWidget() ? parentWidget()->effectiveWinId() : 0});
}

void bringToForeground::connectControls()
{
    connect(m_widgets.startButton, &QPushButton::clicked, this, [this] {
        if (!m_startPress.postpone())
            m_updates->start();
    });
    MainWindowLayout::connectLogBox(m_widgets, m_logWindow.get());
    m_reports = std::make_unique<ReportSaver>(
        ReportSaver::Dependencies{*m_usb, *m_hid, m_updateLock, m_libraries.usbReady(), m_paths,
                                  [this] { return LastRun::of(m_session); }, *m_logWindow});
}

void bringToForeground::createIapPanel()
{
    log(QStringLiteral("create IAPUpDate Mode..."));
    const QString programmer = ProgramPaths::iapProgrammer();
    log(QFile::exists(programmer) ? QStringLiteral("IAP Process exists")
                                  : QStringLiteral("IAP Process not exists.!"));
    makeIapPanel(programmer);
    log(QStringLiteral("create IAPUpDate Mode done."));
}

void bringToForeground::makeIapPanel(const QString &programmer)
{
    m_iapPanel = new IAPUpDate(IAPUpDate::noDevice, IAPUpDate::noDevice, programmer, parentWidget(), this,
                               m_logWindow.get());
    // The user may have ticked the IAP box while the constructor waited for the programmer.
    onIAPStateChanged(m_widgets.iapBox->checkState());
}

void bringToForeground::checkConnection()
{
    if (!isWaitingForTool())
        apply(m_monitor->tick(m_choices.device()));
}

void bringToForeground::apply(const MonitorOutcome &outcome)
{
    m_choices.setFound(outcome.device, outcome.bootloaderPresent);
    if (outcome.iapIds)
        m_iapPanel->setDeviceIds(outcome.iapIds->productId, outcome.iapIds->vendorId);
    showConnection(outcome, m_widgets);
    m_connectionAnnouncer.announce(connectionInWords(outcome));
    if (outcome.pressStart)
        m_widgets.startButton->click();
    if (outcome.prepareIapPanel)
        m_iapPanel->resetToUsb();
    m_access.checkDevice(outcome.state, *m_logWindow);
}

void bringToForeground::GetDefaultImagePath(const QString &base)
{
    const QStringList images = LocalFiles::listImages(base + QLatin1String("/qmake/"));
    log(images.isEmpty() ? QStringLiteral("not find default img file!")
                         : QStringLiteral("find default img file"));
    log(m_launch.isZN58Mode ? QStringLiteral("IsZN58UseMe?: true") : QStringLiteral("IsZN58UseMe?: false"));
    m_defaultImagePath = base + QLatin1String("/qmake/") + images.value(0);
    m_image->useDefault(m_defaultImagePath);
}

void bringToForeground::enterLocalFileMode()
{
    m_choices.setLocalFileMode(true);
    m_widgets.firmwareFileEdit->show();
    m_widgets.chooseFileButton->show();
}

bool bringToForeground::sendUpdateMode()
{
    return sendUpdateModeReport(m_choices.device(), *m_hid,
                                reportLayoutFor(QOperatingSystemVersion::current()), *this);
}

bool bringToForeground::startIapPanel()
{
    if (!m_iapPanel)
        return false;
    emit m_iapPanel->sigStartClicked();
    return true;
}

void bringToForeground::connectLogOf(IAPUpDate *panel)
{
    connect(panel, &IAPUpDate::sigAppendLog, this, &bringToForeground::AppendLog, Qt::DirectConnection);
}

IapDevice bringToForeground::chosenIapDevice() const
{
    const ChosenDevice device = m_choices.device();
    return {device.iapFlag != 0, device.productId, device.vendorId};
}

UpdateReason bringToForeground::checkUpdateFile()
{
    return checkPanelImage(*this, m_paths.firmwareKeys, m_choices.image(), m_choices.device().name);
}

void bringToForeground::untickIapBox()
{
    m_widgets.iapBox->setChecked(false);
}

void bringToForeground::setPictureLevel(double percent)
{
    emit m_widgets.flashingPage->sigSetPicJD(percent);
}

void bringToForeground::repaintPicture()
{
    QMetaObject::invokeMethod(m_widgets.flashingPage, qOverload<>(&QWidget::update), Qt::QueuedConnection);
}

void bringToForeground::StartCheckConnectTimer()
{
    log(QStringLiteral("StartCheckConnectTimer."));
    emit sigStartCheckDeviceQTimer(true);
    emit sigSetBtnEnable(m_widgets.startButton, true);
}

void bringToForeground::StopCheckConnectTimer()
{
    // Intentional: unlike StartCheckConnectTimer(), this emits no signals. Timer and button must be off when
    // it returns.
    log(QStringLiteral("StopCheckConnectTimer."));
    emit sigSetprogressBarValue(0);
    m_checkTimer->stop();
    m_widgets.startButton->setEnabled(false);
}

void bringToForeground::setStateTitle(const TranslatableText &title)
{
    emit sigSetStateTitle(LanguageUtilities::instance().lookup(title));
}

void bringToForeground::onSetBtnEnable(QPushButton *, bool enable)
{
    // Intentional: always the start button, whatever button is passed.
    m_widgets.startButton->setEnabled(enable);
}

void bringToForeground::onStartCheckDeviceQTimer(bool Start)
{
    if (Start)
        m_checkTimer->start();
    else
        m_checkTimer->stop();
}

void bringToForeground::onSetprogressBarValue(int value)
{
    m_widgets.progressBar->setValue(value);
}

void bringToForeground::onSetStateTitle(QString text)
{
    m_widgets.stateTitleLabel->setText(text);
    m_titleAnnouncer.announce(text);
}

void bringToForeground::appendToFile(QString filePath, QString content)
{
    LogFile::appendLine(filePath, content);
}

void bringToForeground::AppendLog(TextWindow *textWindow, QString text)
{
    if (textWindow && !m_access.holdBack(textWindow, text))
        textWindow->appendLog(text);
}

bool bringToForeground::InitUseWirteType()
{
    return ControlledDeviceList::readWriteType(ControlledDeviceList::path(m_paths.applicationDir),
                                               m_writeType);
}

bool bringToForeground::FindDevForJson(QString dev)
{
    return ControlledDeviceList::findDevForJson(ControlledDeviceList::path(m_paths.applicationDir), dev,
                                                *this);
}

bool bringToForeground::parseDevices(QByteArray jsonData, QString dev)
{
    return ControlledDeviceList::parseDevices(jsonData, dev, *this);
}

void bringToForeground::onIAPStateChanged(int state)
{
    if (!m_iapPanel)
        return;
    m_iapPanel->setVisible(state == Qt::Checked);
    // Window managers do not give the focus to a tool window that opens; the keyboard could not reach it.
    if (m_iapPanel->isVisible())
        m_iapPanel->activateWindow();
}
