#include "app/Departure.h"

#include "support/Diagnostics.h"
#include "support/LanguageUtilities.h"
#include "support/ShutdownFlag.h"

#include <QApplication>
#include <QDebug>
#include <QMessageBox>
#include <QPushButton>
#include <QThreadPool>

#include <chrono>
#include <cstdlib>
#include <thread>

namespace {

// Together with the end of the process itself, which takes its time on a busy machine, two seconds.
constexpr int workerLimitMs = 1000;
constexpr int wholeLimitMs = 1500;
constexpr int flushLimitMs = 100;

[[noreturn]] void endProcess(int exitCode, const char *reason)
{
    qWarning() << "Leaving at once:" << reason;
    Diagnostics::flush(flushLimitMs);
    std::_Exit(exitCode);
}

/// The last resort for what nothing can interrupt, such as a name lookup inside the toolkit, which
/// the application object waits for when it is destroyed. By then all files are written.
void startWatchdog()
{
    std::thread([] {
        std::this_thread::sleep_for(std::chrono::milliseconds(wholeLimitMs));
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

Departure::~Departure() = default;

bool Departure::closeAsked(QWidget *window)
{
    // What is being destroyed may still run an event loop, and the question asks what is gone by then.
    if (ShutdownFlag::instance().isRaised())
        return true;
    if (m_isWriting && m_isWriting() && userStays(window))
        return false;
    leave();
    return true;
}

bool Departure::userStays(QWidget *window)
{
    if (!m_question)
        m_question = makeQuestion(window);
    m_question->exec();
    // What leaves meanwhile hides the question, unanswered.
    return !ShutdownFlag::instance().isRaised() && m_question->clickedButton() == m_question->escapeButton();
}

void Departure::leave()
{
    startWatchdog();
    ShutdownFlag::instance().raise();
    // The log window and the chooser are top-level windows of their own.
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows)
        window->hide();
    QCoreApplication::quit();
}

int Departure::runLoop()
{
    // exec() would forget a quit that was asked for before it.
    return ShutdownFlag::instance().isRaised() ? 0 : QApplication::exec();
}

void Departure::settle(QObject *mainWidget, int exitCode)
{
    ShutdownFlag::instance().raise();
    const bool workerEnded = QThreadPool::globalInstance()->waitForDone(workerLimitMs);
    QCoreApplication::sendPostedEvents(mainWidget, QEvent::MetaCall);
    if (!workerEnded)
        endProcess(exitCode, "the update cannot be stopped.");
}
