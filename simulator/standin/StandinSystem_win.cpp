#include "simulator/standin/StandinSystem.h"

#include <windows.h>

// shellapi.h needs windows.h, so it comes last.
#include <shellapi.h>

namespace {

std::string utf8(const wchar_t *text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes.data(), size, nullptr, nullptr);
    bytes.pop_back();
    return bytes;
}

} // namespace

std::filesystem::path StandinSystem::ownPath()
{
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

std::vector<std::string> StandinSystem::arguments(int, char *[])
{
    // main()'s arguments are in the system's code page, which cannot represent most characters.
    int count = 0;
    wchar_t **const all = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> texts;
    for (int i = 1; i < count; ++i)
        texts.push_back(utf8(all[i]));
    LocalFree(all);
    return texts;
}

int StandinSystem::processId()
{
    return static_cast<int>(GetCurrentProcessId());
}
