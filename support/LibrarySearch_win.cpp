#include "support/LibrarySearch.h"

#include <windows.h>

void LibrarySearch::leaveOutWorkingFolder()
{
    // The program's own folder, the system's, and those that the program names itself; neither the working
    // folder nor the search path. Windows 7 without an update from 2011 lacks it.
    const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    using SetDirectories = BOOL(WINAPI *)(DWORD);
    const auto setDirectories = reinterpret_cast<SetDirectories>(
        reinterpret_cast<void *>(GetProcAddress(kernel, "SetDefaultDllDirectories")));
    if (setDirectories)
        setDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
    SetDllDirectoryW(L"");
}
