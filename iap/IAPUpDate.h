#pragma once

#include "iap/IapForm.h"
#include "iap/IapHost.h"
#include "iap/IapProgrammer.h"
#include "iap/IapRun.h"
#include "support/process/AfterToolWait.h"

#include <QProcess>
#include <QString>
#include <QWidget>

#include <memory>
#include <optional>

class TextWindow;

/// The IAP panel: a tool window docked to the right of the main window. It collects the settings of the
/// external IAP programmer, which IapProgrammer runs. GUI thread.
///
/// While another copy of the program is updating a device, the programmer is not asked for its ports: the
/// list is empty, and the next start fills it.
///
/// Asking the programmer for its ports and devices ("GetData") waits in a local event loop without a limit.
/// A change of the port type, a click on Download and the workflow's request to start that arrive meanwhile
/// are remembered, once each, and acted on afterwards.
class IAPUpDate : public QWidget
{
    Q_OBJECT

public:
    /// Means "no device"; the initial value of both ids.
    static constexpr quint32 noDevice = IapProgrammer::noDevice;

    /// Kills stale programmers, then asks the programmer for its ports; see IapProgrammer. `host` and
    /// `logWindow` are not owned and must outlive the panel, as must `clock`.
    IAPUpDate(quint32 productId, quint32 vendorId, const QString &programmerPath, QWidget *parent,
              IapHost *host, TextWindow *logWindow, const Clock &clock = Clock::real());
    /// Kills a programmer that is still running.
    ~IAPUpDate() override;

    /// Sets the ids that are passed to the programmer from now on.
    void setDeviceIds(quint32 productId, quint32 vendorId)
    {
        m_programmer->setDeviceIds(productId, vendorId);
    }
    /// Resets the settings to those for a USB device.
    void resetToUsb();

signals:
    void sigAppendLog(TextWindow *textWindow, QString text);
    /// `ok` is true if the programmer ended by itself with exit code 0.
    void iapFinished(bool ok);
    /// Emitted by the workflow to start a run with the current settings. May be emitted on any thread.
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
    void showPortType(const QString &type);
    void showPorts(const QString &type, const QStringList &comPorts, const QStringList &usbDevices);
    std::optional<IapRun> prepareRun();
    void readForm(IapRun &run) const;
    bool beginRun();
    bool checkImage();
    void start(const IapRun &run);
    void endRun(UpdateReason reason, const std::function<void()> &giveControlsBack);
    void warnAboutFile();

    IapHost *const m_host;
    TextWindow *const m_logWindow;
    IapForm m_form;
    /// Whether the programmer was asked for its ports, so that the list of ports is valid.
    bool m_portsKnown = false;
    AfterToolWait m_portTypeChange;
    AfterToolWait m_workflowStart;
    /// Repeats the click, which does nothing if the button is disabled by then.
    AfterToolWait m_downloadPress;
    std::unique_ptr<IapProgrammer> m_programmer;
};
