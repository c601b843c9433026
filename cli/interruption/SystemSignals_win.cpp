#include "cli/interruption/SystemSignals.h"

#include <windows.h>

namespace {

void (*notifyProgram)() = nullptr;

/// Called by the system on a new thread for each event.
BOOL WINAPI noteEvent(DWORD event)
{
    notifyProgram();
    // After these events the system ends the process as soon as this function returns.
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
