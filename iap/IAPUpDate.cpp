#include "iap/IAPUpDate.h"

#include "iap/IapAnswer.h"
#include "iap/IapArguments.h"
#include "iap/IapOutput.h"
#include "iap/IapPortType.h"
#include "iap/IapTitles.h"
#include "support/ShutdownFlag.h"

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

constexpr int toolLimitMs = 30000;
constexpr int noLimit = -1;
constexpr int leavingLimitMs = 1000;
// A programmer that has reported 100 may still be verifying; one that found no device does nothing.
constexpr int patienceAfterSuccessMs = 10000;
constexpr int patienceAfterFailureMs = 1000;

void fill(QComboBox &box, const QStringList &items)
{
    box.clear();
    box.addItems(items);
}

} // namespace

IAPUpDate::IAPUpDate(quint32 productId, quint32 vendorId, const QString &programmerPath, QWidget *parent,
                     IapHost *host, TextWindow *logWindow)
    : QWidget(parent, Qt::Tool),
      m_host(host),
      m_logWindow(logWindow),
      m_productId(productId),
      m_vendorId(vendorId),
      m_programmerPath(programmerPath)
{
    killStaleProgrammers(toolLimitMs, WhenLeaving::CutShort);
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
    abandonProgrammer();
    killStaleProgrammers(leavingLimitMs, WhenLeaving::WaitOn);
}

void IAPUpDate::connectSignals()
{
    m_host->connectLogOf(this);
    connect(this, &IAPUpDate::sigStartClicked, this, &IAPUpDate::onStartClicked);
    connect(m_form.download, &QPushButton::clicked, this, &IAPUpDate::onStartClicked);
    connect(m_form.portType, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &IAPUpDate::onPortTypeChanged);
    connect(&ShutdownFlag::instance(), &ShutdownFlag::raised, this, &IAPUpDate::abandonProgrammer);
    m_killTimer.setSingleShot(true);
    connect(&m_killTimer, &QTimer::timeout, this, [this] {
        if (m_process)
            m_process->kill();
    });
}

void IAPUpDate::killStaleProgrammers(int limitMs, WhenLeaving whenLeaving)
{
    if (m_host->updateLock().isTakenElsewhere())
        return;
    // Elsewhere than on Windows there is no such tool, and nothing to do.
    runToolToEnd(QStringLiteral("taskkill"),
                 {QStringLiteral("/F"), QStringLiteral("/IM"), QStringLiteral("IAP_Programmer.exe")}, limitMs,
                 whenLeaving);
}

void IAPUpDate::setDeviceIds(quint32 productId, quint32 vendorId)
{
    m_productId = productId;
    m_vendorId = vendorId;
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
    if (isWaitingForTool()) {
        m_portTypeMissed = true;
        return;
    }
    const QString type = m_form.portType->itemText(index);
    showPortType(type);
    IapRun run;
    QString rawAnswer;
    runAndGetData(&run, &rawAnswer);
    fill(*m_form.portName, type == QLatin1String("USB") ? run.usbDevices : run.comPorts);
    fill(*m_form.baudRate, IapPortType::rates(type));
}

void IAPUpDate::showPortType(const QString &type)
{
    const IapPortType::Look look = IapPortType::look(type);
    if (look.portLabel)
        m_form.portNameLabel->setText(*look.portLabel);
    m_form.address->setEnabled(look.addressEnabled);
    if (look.crcEnabled)
        m_form.crcVerify->setEnabled(*look.crcEnabled);
}

void IAPUpDate::runAndGetData(IapRun *run, QString *rawAnswer)
{
    const ToolRun asked =
        runToolToEnd(m_programmerPath, IapArguments::getData(m_vendorId, m_productId), noLimit);
    catchUpLater();
    *run = IapRun();
    if (asked.end != ToolRun::Finished || asked.crashed)
        return;
    const QByteArray &output = asked.standardOutput;
    *rawAnswer = QString::fromUtf8(output.constData(), output.size()).trimmed();
    qDebug().noquote().nospace() << "Ret: " << *rawAnswer;
    appendLog(QStringLiteral("IAP RunProcessGetData: ") + *rawAnswer);
    const IapAnswer answer = readIapAnswer(*rawAnswer);
    for (const QString &entry : answer.comPorts + answer.usbDevices)
        qDebug().noquote().nospace() << "COMlist: " << entry;
    run->comPorts = answer.comPorts;
    run->usbDevices = answer.usbDevices;
}

void IAPUpDate::catchUpLater()
{
    // Not now: whoever has asked the programmer is still at work on its answer.
    if (m_portTypeMissed || m_startMissed)
        QTimer::singleShot(0, this, &IAPUpDate::catchUp);
}

void IAPUpDate::catchUp()
{
    if (isWaitingForTool())
        return; // and when that has ended it comes back
    if (std::exchange(m_portTypeMissed, false))
        onPortTypeChanged(m_form.portType->currentIndex());
    if (std::exchange(m_startMissed, false))
        onStartClicked();
}

void IAPUpDate::onStartClicked()
{
    if (isWaitingForTool()) {
        // A person can click again. The update that asks for the start has ended, and cannot.
        m_startMissed |= sender() != m_form.download;
        return;
    }
    UpdateLock::Hold hold = m_host->updateLock().take(*m_host);
    if (!hold)
        return;
    qDebug() << "onStartClicked";
    appendLog(QStringLiteral("IAP comm ModeInit..."));
    appendLog(QStringLiteral("check IAP Process exists..."));
    takeChosenDevice();
    QString rawAnswer;
    const IapRun run = buildRun(&rawAnswer);
    if (ShutdownFlag::instance().isRaised())
        return;
    qDebug().noquote().nospace() << "IAPData: " << rawAnswer;
    appendLog(QStringLiteral("IAPData: ") + rawAnswer);
    appendLog(QStringLiteral("try to Start IAP Process..."));
    m_host->StopCheckConnectTimer();
    start(run, std::move(hold));
}

void IAPUpDate::takeChosenDevice()
{
    const IapDevice device = m_host->chosenIapDevice();
    if (!device.isIap) {
        appendLog(QStringLiteral("Current PVID is Not IAP Dev.!"));
        return;
    }
    appendLog(QStringLiteral("IAPPVID: %1,%2").arg(device.productId).arg(device.vendorId));
    setDeviceIds(device.productId, device.vendorId);
}

IapRun IAPUpDate::buildRun(QString *rawAnswer)
{
    IapRun run;
    runAndGetData(&run, rawAnswer);
    run.portType = m_form.portType->currentText();
    run.address = m_form.address->selectedText();
    run.baudRate = m_form.baudRate->currentText();
    run.appStartAddress = m_form.appStartAddress->selectedText();
    run.crcVerify = m_form.crcVerify->checkState() != Qt::Unchecked;
    run.updateFile = m_host->updateFile();
    run.vendorId = m_vendorId;
    run.productId = m_productId;
    return run;
}

void IAPUpDate::start(const IapRun &run, UpdateLock::Hold hold)
{
    if (m_process) {
        qWarning() << "IAP already running";
        return;
    }
    if (!run.updateFile.endsWith(QLatin1String(".bin"), Qt::CaseInsensitive)) {
        refuseFile();
        m_host->iapRunEnded();
        return;
    }
    if (!launch(run)) {
        // Nothing is said, and the monitor stays off, on purpose.
        m_host->iapRunEnded();
        return;
    }
    m_hold = std::move(hold);
    appendLog(QStringLiteral("disable IAPbtnStart_"));
    m_form.download->setEnabled(false);
    m_host->setStateTitle(IapTitles::attempting);
}

void IAPUpDate::refuseFile()
{
    appendLog(QStringLiteral("UpDateFile is not .bin.!"));
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Warning!"),
                    QStringLiteral("u are not chose update file.!"), QMessageBox::Ok, parentWidget());
    box.setObjectName(QStringLiteral("iapFileWarning"));
    connect(&ShutdownFlag::instance(), &ShutdownFlag::raised, &box, &QDialog::reject);
    box.exec();
    m_host->StartCheckConnectTimer();
}

bool IAPUpDate::launch(const IapRun &run)
{
    const IapArguments::Fields fields{m_form.address->text(), m_form.portName->currentIndex(),
                                      m_form.baudRate->currentText(), m_form.appStartAddress->text(),
                                      m_form.crcVerify->isChecked()};
    auto *process = new QProcess(this);
    process->setProgram(m_programmerPath);
    process->setArguments(IapArguments::start(run, fields));
    process->setProcessChannelMode(QProcess::MergedChannels);
    connect(process, &QProcess::readyReadStandardOutput, this, &IAPUpDate::onReadyOut);
    connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this, &IAPUpDate::onFinished);
    m_process = process;
    process->start(QIODevice::ReadWrite);
    if (process->waitForStarted(toolLimitMs))
        return true;
    m_process = nullptr;
    delete process;
    return false;
}

void IAPUpDate::onReadyOut()
{
    if (!m_process)
        return;
    const QByteArray bytes = m_process->readAllStandardOutput();
    const QString text = QString::fromUtf8(bytes.constData(), bytes.size()).trimmed();
    appendLog(text);
    const IapChunk chunk = readIapChunk(text);
    if (chunk.progress) {
        m_host->setStateTitle(IapTitles::inProgress);
        m_host->setProgress(*chunk.progress);
        m_host->setPictureLevel(*chunk.progress);
        qDebug().noquote().nospace() << "v: " << *chunk.progress;
    }
    if (chunk.finished) {
        m_host->setStateTitle(IapTitles::success);
        endProgrammerWithin(patienceAfterSuccessMs);
    } else if (chunk.failed) {
        m_host->setStateTitle(IapTitles::failure);
        endProgrammerWithin(patienceAfterFailureMs);
    }
}

void IAPUpDate::endProgrammerWithin(int milliseconds)
{
    m_process->terminate();
    if (!m_killTimer.isActive() || m_killTimer.remainingTime() > milliseconds)
        m_killTimer.start(milliseconds);
}

void IAPUpDate::onFinished(int exitCode, QProcess::ExitStatus st)
{
    m_killTimer.stop();
    appendLog(QStringLiteral("IAP finished, exitCode=%1").arg(exitCode));
    emit iapFinished(st == QProcess::NormalExit && exitCode == 0);
    m_host->StartCheckConnectTimer();
    m_form.download->setEnabled(true);
    appendLog(QStringLiteral("enable IAPbtnStart_"));
    if (m_process) {
        m_process->deleteLater();
        m_process = nullptr;
    }
    m_hold.reset();
    m_host->iapRunEnded();
}

void IAPUpDate::abandonProgrammer()
{
    if (!m_process)
        return;
    m_killTimer.stop();
    m_process->disconnect(this);
    m_process->kill();
    m_process->waitForFinished(leavingLimitMs);
    m_process->deleteLater();
    m_process = nullptr;
    appendLog(QStringLiteral("The program was closed before the IAP programmer had ended."));
}
