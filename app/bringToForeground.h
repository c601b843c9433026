#pragma once

#include "app/DeviceLibraries.h"
#include "app/MainWindowWidgets.h"
#include "app/ProgramPaths.h"
#include "app/SystemAccess.h"
#include "app/UpdateStarter.h"
#include "devices/ConnectionMonitor.h"
#include "devices/ControlledDeviceList.h"
#include "iap/IapHost.h"
#include "support/LaunchOptions.h"
#include "update/LiveState.h"
#include "update/UpdateHost.h"
#include "update/UpdatePaths.h"
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

/// The main widget: owner of the program's state and of its five signals, through which work on
/// other threads reaches the window. Each operation hands over to the room that its subject belongs to.
///
/// Everything runs on the GUI thread but the Reporter and UpdateHost operations, which any thread
/// may call. No update may be running when it is destroyed.
class bringToForeground : public QWidget, public IapHost, public UpdateHost, public LocalFileHost
{
    Q_OBJECT

public:
    bringToForeground(QWidget *parent, bool isZN58Mode, bool isTessilonixMode,
                      const QString &wantedModelName);
    ~bringToForeground() override;

    /// Whether closing the window now would cut a device off in the middle of being written.
    bool isWriting() const;

    /// Takes the default image below `base` as the image to burn and shows it in the path field.
    void GetDefaultImagePath(const QString &base);
    /// Sends the chosen device into its bootloader. On the update's thread only.
    bool sendUpdateMode() override;

    /// Starts the connection monitor and gives the start button back.
    void StartCheckConnectTimer() override;
    /// Stops the connection monitor and takes the start button away.
    void StopCheckConnectTimer() override;

    void log(const QString &line) override { emit sigAppendLog(m_logWindow.get(), line); }
    bool isCatchingUp() const override { return m_linesOnTheirWay > 0; }
    void setStateTitle(const BilingualText &title) override;
    void setProgress(int percent) override { emit sigSetprogressBarValue(percent); }
    void enableStartButton(bool enable) override { emit sigSetBtnEnable(m_widgets.startButton, enable); }
    void runDeviceCheck(bool run) override { emit sigStartCheckDeviceQTimer(run); }

    void setPictureLevel(double percent) override;
    void repaintPicture() override;
    bool startIapPanel() override;

    void enterLocalFileMode() override;

    void connectLogOf(IAPUpDate *panel) override;
    IapDevice chosenIapDevice() const override;
    QString updateFile() const override { return m_state.imagePath(); }
    void untickIapBox() override;
    void iapRunEnded() override;
    UpdateLock &updateLock() override { return m_updateLock; }

signals:
    void sigSetBtnEnable(QPushButton *btn, bool enable);
    void sigStartCheckDeviceQTimer(bool Start);
    void sigSetprogressBarValue(int value);
    void sigAppendLog(TextWindow *textWindow, QString text);
    void sigSetStateTitle(QString text);

public slots:
    // Their order is part of the contract with whoever invokes them by index.
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
    void initialisePaths();
    void initialiseLanguage();
    void connectSignals();
    void connectLog();
    void connectControlSignals();
    void initialiseDeviceLibraries();
    void buildConnectionControls();
    void buildWriteTypeSelector();
    void buildInterface();
    void createMonitor();
    void createLogWindow();
    void checkDriver();
    void createDownloaders();
    void connectControls();
    void reduceInterface();
    void createIapPanel();
    void makeIapPanel(const QString &programmer);
    bool findIapProgrammer(QString *path) const;

    void checkConnection();
    void take(const MonitorOutcome &outcome);
    void browseForFirmware();
    void setImagePath(const QString &path);

    LaunchOptions m_launch;
    UpdatePaths m_paths;
    QString m_lastDirFilePath;
    QString m_defaultImagePath;
    WriteType m_writeType;
    /// Before everything that may hold a device of theirs open, and so destroyed after it.
    DeviceLibraries m_libraries;
    LiveState m_state;
    std::unique_ptr<UsbBus> m_usb;
    std::unique_ptr<HidPort> m_hid;
    std::unique_ptr<ConnectionMonitor> m_monitor;

    MainWindowWidgets m_widgets;
    QTimer *m_checkTimer = nullptr;
    std::unique_ptr<TextWindow> m_logWindow;
    SystemAccess m_access;
    std::atomic<int> m_linesOnTheirWay{0};
    FileDownloaderHTTP *m_downloader = nullptr;
    std::unique_ptr<ThreadFileDownloader> m_segmentWorker;
    UpdateLock m_updateLock{ProgramPaths::updateLock()};
    std::unique_ptr<UpdateStarter> m_updates;
    /// On the background window like this widget, which deletes it before anything that it uses.
    IAPUpDate *m_iapPanel = nullptr;
};
