#include "app/Shutdown.h"

#include "support/LanguageUtilities.h"
#include "support/log/Diagnostics.h"
#include "support/process/ShutdownFlag.h"

#include <QApplication>
#include <QDebug>
#include <QMessageBox>
#include <QPushButton>
#include <QThreadPool>

#include <chrono>
#include <cstdlib>
#include <thread>

namespace {

// The program has to end within two seconds. What these limits leave is for the end of the process on a busy
// machine.
constexpr int workerLimitMs = 1000;
constexpr int totalLimitMs = 1500;
constexpr int flushLimitMs = 100;

[[noreturn]] void endProcess(int exitCode, const char *reason)
{
    qWarning() << "The process is ended by force:" << reason;
    Diagnostics::flush(flushLimitMs);
    std::_Exit(exitCode);
}

/// Ends the process when something cannot be interrupted, such as a name lookup inside Qt that the
/// application object's destructor waits for. All files are written by then.
void startWatchdog()
{
    std::thread([] {
        std::this_thread::sleep_for(std::chrono::milliseconds(totalLimitMs));
        endProcess(0, "something cannot be interrupted.");
    }).detach();
}

QMessageBox *makeQuestion(QWidget *window)
{
    const bool chinese = LanguageUtilities::instance().language() == QLatin1String("zh_CN");
    const QString text =
        chinese ? QStringLiteral("设备正在写入固件。现在关闭程序可能导致设备无法使用。\n\n确定要关闭吗?")
                : QStringLiteral("Firmware is being written to the device. Closing now may "
                                 "leave the device unusable.\n\nClose all the same?");
    auto *box =
        new QMessageBox(QMessageBox::Warning, window->windowTitle(), text, QMessageBox::NoButton, window);
    box->setObjectName(QStringLiteral("leaveQuestion"));
    box->addButton(chinese ? QStringLiteral("关闭") : QStringLiteral("Close"), QMessageBox::DestructiveRole);
    QPushButton *stay = box->addButton(chinese ? QStringLiteral("继续升级") : QStringLiteral("Keep updating"),
                                       QMessageBox::RejectRole);
    box->setDefaultButton(stay);
    box->setEscapeButton(stay);
    return box;
}

} // namespace

Shutdown::~Shutdown() = default;

bool Shutdown::requestClose(QWidget *window)
{
    // An object in its destructor may still run an event loop, and m_isWriting may refer to a destroyed one.
    if (ShutdownFlag::instance().isRaised())
        return true;
    if (m_isWriting && m_isWriting() && userKeepsRunning(window))
        return false;
    begin();
    return true;
}

bool Shutdown::userKeepsRunning(QWidget *window)
{
    if (!m_question)
        m_question = makeQuestion(window);
    m_question->exec();
    // Shutting down hides the question without answering it.
    return !ShutdownFlag::instance().isRaised() && m_question->clickedButton() == m_question->escapeButton();
}

void Shutdown::begin()
{
    startWatchdog();
    ShutdownFlag::instance().raise();
    // The log window and the chooser are separate top-level windows.
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows)
        window->hide();
    QCoreApplication::quit();
}

int Shutdown::runLoop()
{
    // exec() forgets an earlier request to quit.
    return ShutdownFlag::instance().isRaised() ? 0 : QApplication::exec();
}

void Shutdown::finish(QObject *mainWidget, int exitCode)
{
    ShutdownFlag::instance().raise();
    const bool workerEnded = QThreadPool::globalInstance()->waitForDone(workerLimitMs);
    QCoreApplication::sendPostedEvents(mainWidget, QEvent::MetaCall);
    if (!workerEnded)
        endProcess(exitCode, "the update thread does not stop.");
}
