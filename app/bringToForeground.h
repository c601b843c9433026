#pragma once

#include "app/ImageChoice.h"
#include "app/ReportSaver.h"
#include "app/SystemAccess.h"
#include "app/UpdateStarter.h"
#include "app/window/MainWindowWidgets.h"
#include "devices/ConnectionMonitor.h"
#include "devices/ControlledDeviceList.h"
#include "devices/DeviceLibraries.h"
#include "iap/IapHost.h"
#include "session/UpdateSession.h"
#include "support/process/AfterToolWait.h"
#include "support/process/LaunchOptions.h"
#include "update/ProgramPaths.h"
#include "update/UpdateChoices.h"
#include "update/UpdateHost.h"
#include "update/UpdatePaths.h"
#include "widgets/Announcer.h"
#include "widgets/LocalFileHost.h"

#include <QJsonObject>
#include <QPushButton>
#include <QTimer>
#include <QWidget>

#include <atomic>
#include <memory>

class FileDownloaderHTTP;
class IAPUpDate;
class TextWindow;
class ThreadFileDownloader;

/// The main widget. Owns the program's state and the five signals through which other threads reach the
/// window. Each operation delegates to the module responsible for it.
///
/// GUI thread, except for the Reporter and UpdateHost operations, which may be called from any thread. No
/// update may be running when it is destroyed.
class bringToForeground : public QWidget, public IapHost, public UpdateHost, public LocalFileHost
{
    Q_OBJECT

public:
    bringToForeground(QWidget *parent, bool isZN58Mode, bool isTessilonixMode,
                      const QString &wantedModelName);
    ~bringToForeground() override;

    /// Returns whether firmware is being written, so that closing now could leave a device unusable.
    bool isWriting() const { return m_session.isWritingDevice(); }

    /// Finds the default image below `base`, makes it the image to burn and shows its path.
    void GetDefaultImagePath(const QString &base);
    /// Sends the chosen device into its bootloader. Called on the update's thread only.
    bool sendUpdateMode() override;

    /// Starts the connection monitor and enables the start button.
    void StartCheckConnectTimer() override;
    /// Stops the connection monitor and disables the start button.
    void StopCheckConnectTimer() override;

    void log(const QString &line) override { emit sigAppendLog(m_logWindow.get(), line); }
    bool isCatchingUp() const override { return m_queuedLines > 0; }
    void setStateTitle(const TranslatableText &title) override;
    void setProgress(int percent) override { emit sigSetprogressBarValue(percent); }
    void enableStartButton(bool enable) override { emit sigSetBtnEnable(m_widgets.startButton, enable); }
    void runDeviceCheck(bool run) override { emit sigStartCheckDeviceQTimer(run); }

    void setPictureLevel(double percent) override;
    void repaintPicture() override;
    bool startIapPanel() override;

    void enterLocalFileMode() override;

    void connectLogOf(IAPUpDate *panel) override;
    IapDevice chosenIapDevice() const override;
    QString updateFile() const override { return m_choices.image().path; }
    UpdateReason checkUpdateFile() override;
    void untickIapBox() override;
    UpdateSession &session() override { return m_session; }

signals:
    void sigSetBtnEnable(QPushButton *btn, bool enable);
    void sigStartCheckDeviceQTimer(bool Start);
    void sigSetprogressBarValue(int value);
    void sigAppendLog(TextWindow *textWindow, QString text);
    void sigSetStateTitle(QString text);

public slots:
    // Keep the order: callers invoke these slots by their index in the meta-object.
    void onSetBtnEnable(QPushButton *btn, bool enable);
    void onStartCheckDeviceQTimer(bool Start);
    void onSetprogressBarValue(int value);
    void onSetStateTitle(QString text);
    void appendToFile(QString filePath, QString content);
    void AppendLog(TextWindow *textWindow, QString text);
    bool isDeviceOn(QJsonObject device) { return ControlledDeviceList::isDeviceOn(device); }
    QString GetDefaultImagePath() { return m_defaultImagePath; }
    bool InitUseWirteType();
    bool FindDevForJson(QString dev);
    bool parseDevices(QByteArray jsonData, QString dev);
    void onIAPStateChanged(int state);

private:
    void initialiseState(const LaunchOptions &launch);
    void initialiseLanguage();
    void connectSignals();
    void connectLog();
    void connectControlSignals();
    void initialiseDeviceLibraries();
    void buildWriteTypeBox();
    void buildInterface();
    void createMonitor();
    void createLogWindow();
    void createDownloaders();
    void connectControls();
    void createIapPanel();
    void makeIapPanel(const QString &programmer);

    void checkConnection();
    void apply(const MonitorOutcome &outcome);

    LaunchOptions m_launch;
    UpdatePaths m_paths;
    QString m_defaultImagePath;
    WriteType m_writeType;
    /// Declared before everything that may hold an open device, so that it is destroyed after them.
    DeviceLibraries m_libraries;
    UpdateChoices m_choices;
    std::unique_ptr<ImageChoice> m_image;
    std::unique_ptr<UsbBus> m_usb;
    std::unique_ptr<HidPort> m_hid;
    std::unique_ptr<ConnectionMonitor> m_monitor;

    MainWindowWidgets m_widgets;
    /// Clicks the button after the tool has ended: a disabled button ignores the click.
    AfterToolWait m_startPress{[this] {
        m_widgets.startButton->click();
    }};
    Announcer m_titleAnnouncer{this};
    Announcer m_connectionAnnouncer{this};
    QTimer *m_checkTimer = nullptr;
    std::unique_ptr<TextWindow> m_logWindow;
    SystemAccess m_access;
    std::atomic<int> m_queuedLines{0};
    FileDownloaderHTTP *m_downloader = nullptr;
    std::unique_ptr<ThreadFileDownloader> m_segmentWorker;
    UpdateLock m_updateLock{ProgramPaths::updateLock()};
    UpdateSession m_session{m_updateLock};
    std::unique_ptr<UpdateStarter> m_updates;
    /// Declared after everything that a report is made from.
    std::unique_ptr<ReportSaver> m_reports;
    /// A child of the background window. Deleted first in the destructor, while everything it uses still
    /// exists.
    IAPUpDate *m_iapPanel = nullptr;
};
