#include "support/process/LibrarySearch.h"

#include <windows.h>

void LibrarySearch::excludeWorkingFolder()
{
    // Searches the program's folder, the system folder and folders added by the program, but neither the
    // working folder nor PATH. The function is missing on Windows 7 without an update of 2011.
    const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    using SetDirectories = BOOL(WINAPI *)(DWORD);
    const auto setDirectories = reinterpret_cast<SetDirectories>(
        reinterpret_cast<void *>(GetProcAddress(kernel, "SetDefaultDllDirectories")));
    if (setDirectories)
        setDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
    SetDllDirectoryW(L"");
}
