#include "iap/IAPUpDate.h"

#include "iap/IapArguments.h"
#include "iap/IapPortType.h"
#include "support/process/ShutdownFlag.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDebug>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include <utility>

namespace {

void fill(QComboBox &box, const QStringList &items)
{
    box.clear();
    box.addItems(items);
}

/// Disables a widget during its lifetime.
class Disabled
{
public:
    explicit Disabled(QWidget &widget) : m_widget(widget) { m_widget.setEnabled(false); }
    ~Disabled() { m_widget.setEnabled(true); }
    Q_DISABLE_COPY(Disabled)

private:
    QWidget &m_widget;
};

} // namespace

IAPUpDate::IAPUpDate(quint32 productId, quint32 vendorId, const QString &programmerPath, QWidget *parent,
                     IapHost *host, TextWindow *logWindow, const Clock &clock)
    : QWidget(parent, Qt::Tool),
      m_host(host),
      m_logWindow(logWindow),
      m_portTypeChange([this] { onPortTypeChanged(m_form.portType->currentIndex()); }),
      m_workflowStart([this] { onStartClicked(); }),
      m_downloadPress([this] { m_form.download->click(); }),
      m_programmer(std::make_unique<IapProgrammer>(
          IapProgrammer::Dependencies{programmerPath, *host, [this](const QString &line) { appendLog(line); },
                                      host->session().lock(), clock},
          this))
{
    m_programmer->setDeviceIds(productId, vendorId);
    setObjectName(QStringLiteral("iapPanel"));
    setWindowTitle(QStringLiteral("IAP UpDate"));
    resize(320, 260);
    if (parent) {
        parent->installEventFilter(this);
        dockToParent();
    }
    m_form = IapForm::build(this);
    connectSignals();
    onPortTypeChanged(m_form.portType->currentIndex());
}

IAPUpDate::~IAPUpDate()
{
    // Destroyed first, while this object can still forward its last log line.
    m_programmer.reset();
}

void IAPUpDate::connectSignals()
{
    m_host->connectLogOf(this);
    connect(this, &IAPUpDate::sigStartClicked, this, &IAPUpDate::onStartClicked);
    connect(m_form.download, &QPushButton::clicked, this, [this] {
        if (m_downloadPress.postpone())
            return;
        if (m_host->session().isRunning())
            appendLog(QStringLiteral("Download is not possible while an update is running."));
        else
            onStartClicked();
    });
    connect(m_form.portType, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &IAPUpDate::onPortTypeChanged);
    connect(m_programmer.get(), &IapProgrammer::started, this, [this] {
        appendLog(QStringLiteral("disable IAPbtnStart_"));
        m_form.download->setEnabled(false);
    });
    connect(m_programmer.get(), &IapProgrammer::outputReady, this, &IAPUpDate::onReadyOut);
    connect(m_programmer.get(), &IapProgrammer::progressed, this,
            [this](int percent) { m_host->setPictureLevel(percent); });
    connect(m_programmer.get(), &IapProgrammer::exited, this, &IAPUpDate::onFinished);
    // Connected after the programmer's own slot, which has killed the process by then.
    connect(&ShutdownFlag::instance(), &ShutdownFlag::raised, this, [this] {
        if (m_host->session().stage() == UpdateStage::Programming)
            endRun(UpdateReason::ProgramClosed, {});
    });
}

void IAPUpDate::resetToUsb()
{
    m_form.portType->setCurrentText(QStringLiteral("USB"));
    m_form.portName->setCurrentIndex(0);
    m_form.crcVerify->setChecked(true);
}

void IAPUpDate::appendLog(const QString &line)
{
    emit sigAppendLog(m_logWindow, line);
}

void IAPUpDate::dockToParent()
{
    move(parentWidget()->geometry().topRight());
}

bool IAPUpDate::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && (event->type() == QEvent::Move || event->type() == QEvent::Resize))
        dockToParent();
    return QWidget::eventFilter(watched, event);
}

void IAPUpDate::closeEvent(QCloseEvent *event)
{
    if (m_host)
        m_host->untickIapBox();
    QWidget::closeEvent(event);
}

void IAPUpDate::onPortTypeChanged(int index)
{
    if (m_portTypeChange.postpone())
        return;
    const QString type = m_form.portType->itemText(index);
    showPortType(type);
    const IapProgrammer::Ports ports = m_programmer->askForPorts();
    m_portsKnown = ports.wereAskedFor;
    showPorts(type, ports.found.comPorts, ports.found.usbDevices);
    fill(*m_form.baudRate, IapPortType::rates(type));
}

void IAPUpDate::showPortType(const QString &type)
{
    const IapPortType::Appearance look = IapPortType::appearance(type);
    if (look.portLabel)
        m_form.portNameLabel->setText(*look.portLabel);
    m_form.address->setEnabled(look.addressEnabled);
    if (look.crcEnabled)
        m_form.crcVerify->setEnabled(*look.crcEnabled);
}

void IAPUpDate::showPorts(const QString &type, const QStringList &comPorts, const QStringList &usbDevices)
{
    fill(*m_form.portName, type == QLatin1String("USB") ? usbDevices : comPorts);
}

void IAPUpDate::onStartClicked()
{
    if (m_workflowStart.postpone())
        return;
    {
        // The arguments of the run are read from the fields, which must belong to the selected port type.
        // Acting on a postponed change asks the programmer, and the user could change the type again.
        const Disabled unchanged(*m_form.portType);
        m_portTypeChange.runNow();
    }
    if (!beginRun()) {
        if (m_programmer->isRunning())
            qWarning() << "IAP already running";
        return;
    }
    const std::optional<IapRun> run = prepareRun();
    if (!run) {
        endRun(UpdateReason::ProgramClosed, {});
        return;
    }
    m_host->StopCheckConnectTimer();
    start(*run);
}

/// Begins a run that the user has started in this panel. A run handed over by the workflow has already begun.
bool IAPUpDate::beginRun()
{
    UpdateSession &session = m_host->session();
    if (session.stage() == UpdateStage::AskingProgrammer)
        return true;
    // Read before the programmer is asked: a file that the user chooses meanwhile is for the next run.
    const QString image = m_host->updateFile();
    if (!session.begin(UpdateStage::AskingProgrammer, *m_host))
        return false;
    session.useImage(image);
    return checkImage();
}

/// Lets the main widget check the file that the user wants to program, and ends the run if it is refused.
bool IAPUpDate::checkImage()
{
    const Disabled unchanged(*m_form.portType);
    const UpdateReason reason = m_host->checkUpdateFile();
    if (reason != UpdateReason::None)
        endRun(reason, {});
    return reason == UpdateReason::None;
}

std::optional<IapRun> IAPUpDate::prepareRun()
{
    // Until the port type is read below, the fields must belong to it.
    const Disabled unchanged(*m_form.portType);
    std::optional<IapRun> run = m_programmer->prepare(m_host->chosenIapDevice());
    if (!run)
        return run;
    if (!std::exchange(m_portsKnown, true))
        showPorts(m_form.portType->currentText(), run->comPorts, run->usbDevices);
    readForm(*run);
    return run;
}

void IAPUpDate::readForm(IapRun &run) const
{
    run.portType = m_form.portType->currentText();
    run.address = m_form.address->selectedText();
    run.baudRate = m_form.baudRate->currentText();
    run.appStartAddress = m_form.appStartAddress->selectedText();
    run.crcVerify = m_form.crcVerify->checkState() != Qt::Unchecked;
    run.updateFile = m_host->session().image();
}

void IAPUpDate::start(const IapRun &run)
{
    const IapArguments::Fields fields{m_form.address->text(), m_form.portName->currentIndex(),
                                      m_form.baudRate->currentText(), m_form.appStartAddress->text(),
                                      m_form.crcVerify->isChecked()};
    switch (m_programmer->start(run, fields)) {
    case IapProgrammer::StartResult::Started:
        m_host->session().enter(UpdateStage::Programming);
        break;
    case IapProgrammer::StartResult::AlreadyRunning:
        break;
    case IapProgrammer::StartResult::NotABinFile:
        warnAboutFile();
        endRun(UpdateReason::ImageRefused, [this] { m_host->StartCheckConnectTimer(); });
        break;
    case IapProgrammer::StartResult::NotStarted:
        // Intentional: no message, and the monitor stays off.
        endRun(UpdateReason::ToolNotStarted, {});
        break;
    }
}

void IAPUpDate::warnAboutFile()
{
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Warning!"),
                    QStringLiteral("u are not chose update file.!"), QMessageBox::Ok, parentWidget());
    box.setObjectName(QStringLiteral("iapFileWarning"));
    connect(&ShutdownFlag::instance(), &ShutdownFlag::raised, &box, &QDialog::reject);
    box.exec();
}

void IAPUpDate::onReadyOut()
{
    m_programmer->readOutput();
}

void IAPUpDate::onFinished(int exitCode, QProcess::ExitStatus st)
{
    m_programmer->conclude(exitCode);
    emit iapFinished(st == QProcess::NormalExit && exitCode == 0);
    endRun(m_programmer->verdict(), [this] { m_host->StartCheckConnectTimer(); });
    m_form.download->setEnabled(true);
    appendLog(QStringLiteral("enable IAPbtnStart_"));
}

void IAPUpDate::endRun(UpdateReason reason, const std::function<void()> &giveControlsBack)
{
    const bool isClosed = reason == UpdateReason::ProgramClosed;
    m_host->session().end(
        reason, isClosed ? UpdateSession::Afterwards::ProgramClosed : UpdateSession::Afterwards::Idle,
        giveControlsBack);
}
