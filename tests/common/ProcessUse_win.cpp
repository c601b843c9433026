#include "tests/common/ProcessUse.h"

#include <windows.h>
// These headers need windows.h, so they come after it.
#include <psapi.h>
#include <tlhelp32.h>

namespace {

int threadsOf(DWORD processId)
{
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    if (snapshot == INVALID_HANDLE_VALUE)
        return 0;
    int threads = 0;
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry))
        threads += entry.th32OwnerProcessID == processId ? 1 : 0;
    CloseHandle(snapshot);
    return threads;
}

} // namespace

ProcessUse ProcessUse::of(qint64 id)
{
    const DWORD processId = id ? static_cast<DWORD>(id) : GetCurrentProcessId();
    const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId);
    if (!process)
        return {};
    DWORD handles = 0;
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessHandleCount(process, &handles);
    K32GetProcessMemoryInfo(process, &memory, sizeof memory);
    CloseHandle(process);
    ProcessUse use;
    use.descriptors = static_cast<int>(handles);
    use.threads = threadsOf(processId);
    use.residentKilobytes = static_cast<int>(memory.WorkingSetSize / 1024);
    use.peakKilobytes = static_cast<int>(memory.PeakWorkingSetSize / 1024);
    return use;
}
