#include "cli/SystemSignals.h"

#include <windows.h>

namespace {

void (*notifyProgram)() = nullptr;

/// Runs on a thread that the system makes for the event.
BOOL WINAPI noteEvent(DWORD event)
{
    notifyProgram();
    // After these the system ends the process as soon as this returns.
    if (event == CTRL_CLOSE_EVENT || event == CTRL_LOGOFF_EVENT || event == CTRL_SHUTDOWN_EVENT)
        Sleep(INFINITE);
    return TRUE;
}

} // namespace

void SystemSignals::watchSystem()
{
    notifyProgram = &SystemSignals::notify;
    SetConsoleCtrlHandler(noteEvent, TRUE);
}
