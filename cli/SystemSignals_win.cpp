#include "cli/SystemSignals.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <windows.h>

namespace {

std::function<void()> *handler = nullptr;

/// Runs on a thread that the system makes for the event.
BOOL WINAPI noteEvent(DWORD event)
{
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [] { (*handler)(); }, Qt::QueuedConnection);
    // After these the system ends the process as soon as this returns.
    if (event == CTRL_CLOSE_EVENT || event == CTRL_LOGOFF_EVENT || event == CTRL_SHUTDOWN_EVENT)
        Sleep(INFINITE);
    return TRUE;
}

} // namespace

void watchSystemSignals(const std::function<void()> &requested)
{
    handler = new std::function<void()>(requested);
    SetConsoleCtrlHandler(noteEvent, TRUE);
}
