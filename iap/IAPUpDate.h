#pragma once

#include "iap/IapForm.h"
#include "iap/IapHost.h"
#include "iap/IapRun.h"
#include "support/ToolRun.h"

#include <QProcess>
#include <QString>
#include <QTimer>
#include <QWidget>

class TextWindow;

/// The IAP panel: a small tool window, docked to the right of the main window, that gathers the
/// settings of the external IAP programmer, runs it, and turns its output into progress. GUI thread.
///
/// Asking the programmer what is there ("GetData") waits in a local event loop, without a limit; a
/// port type chosen meanwhile, and a start that the update asks for, wait until it has answered.
class IAPUpDate : public QWidget
{
    Q_OBJECT

public:
    /// No device: what both ids are at first.
    static constexpr quint32 noDevice = 0xFFFFFFFF;

    /// Ends programmers that an earlier run has left, unless another copy of the program is updating a
    /// device and they may be at work, and asks the programmer for its ports.
    /// `host` and `logWindow` are not owned and must outlive the panel.
    IAPUpDate(quint32 productId, quint32 vendorId, const QString &programmerPath, QWidget *parent,
              IapHost *host, TextWindow *logWindow);
    /// Kills a programmer that still runs.
    ~IAPUpDate() override;

    /// The ids that the programmer gets from now on.
    void setDeviceIds(quint32 productId, quint32 vendorId);
    /// Sets the panel up for a device on the USB.
    void resetToUsb();
    /// Whether the programmer is at work on a device.
    bool isProgramming() const { return m_process != nullptr; }

signals:
    void sigAppendLog(TextWindow *textWindow, QString text);
    /// `ok`: the programmer ended by itself, with the exit code 0.
    void iapFinished(bool ok);
    /// Starts a run with the settings as they are. May be emitted on any thread.
    void sigStartClicked();

public slots:
    void onPortTypeChanged(int index);
    void onStartClicked();
    void onReadyOut();
    void onFinished(int exitCode, QProcess::ExitStatus st);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void appendLog(const QString &line);
    void dockToParent();
    void connectSignals();
    void killStaleProgrammers(int limitMs, WhenLeaving whenLeaving);
    void showPortType(const QString &type);
    void runAndGetData(IapRun *run, QString *rawAnswer);
    void catchUpLater();
    void catchUp();
    void takeChosenDevice();
    IapRun buildRun(QString *rawAnswer);
    void start(const IapRun &run, UpdateLock::Hold hold);
    void refuseFile();
    bool launch(const IapRun &run);
    void endProgrammerWithin(int milliseconds);
    void abandonProgrammer();

    IapHost *const m_host;
    QProcess *m_process = nullptr;
    /// From the start of the programmer to its end.
    UpdateLock::Hold m_hold;
    TextWindow *const m_logWindow;
    quint32 m_productId;
    quint32 m_vendorId;
    const QString m_programmerPath;
    IapForm m_form;

    /// The kill that follows a termination: a console program on Windows does not hear of the latter.
    QTimer m_killTimer;
    /// What came while the programmer was being asked.
    bool m_portTypeMissed = false;
    bool m_startMissed = false;
};
