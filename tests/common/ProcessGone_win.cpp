#include "tests/common/ProcessGone.h"

#include <windows.h>

bool processIsGone(qint64 processId)
{
    const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(processId));
    if (!process)
        return true;
    const bool ended = WaitForSingleObject(process, 0) == WAIT_OBJECT_0;
    CloseHandle(process);
    return ended;
}

bool processIsReaped(qint64 processId)
{
    // Windows has no zombies.
    return processIsGone(processId);
}
