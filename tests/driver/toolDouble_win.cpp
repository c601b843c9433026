// Stands in for dpscat.exe and pnputil.exe, under whose names it is copied. It adds its arguments to
// "<itself>.args" (UTF-8, one a line, an empty line after each run), prints the bytes of
// "<itself>.out" and "<itself>.err", and makes a catalog in the folder that "/PATH" names.

#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace {

std::string utf8(const wchar_t *text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes.data(), size, nullptr, nullptr);
    bytes.pop_back();
    return bytes;
}

void print(const std::wstring &path, DWORD stream)
{
    FILE *file = _wfopen(path.c_str(), L"rb");
    if (!file)
        return;
    char bytes[4096];
    const size_t size = fread(bytes, 1, sizeof bytes, file);
    fclose(file);
    DWORD written = 0;
    WriteFile(GetStdHandle(stream), bytes, static_cast<DWORD>(size), &written, nullptr);
}

bool append(const std::wstring &path, const std::string &bytes)
{
    FILE *file = _wfopen(path.c_str(), L"ab");
    if (!file)
        return false;
    const bool whole = fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return fclose(file) == 0 && whole;
}

} // namespace

int wmain(int argc, wchar_t *argv[])
{
    wchar_t self[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    const std::wstring path = self;
    std::string record;
    for (int i = 1; i < argc; ++i)
        record += utf8(argv[i]) + '\n';
    if (!append(path + L".args", record + '\n'))
        return 97;
    print(path + L".out", STD_OUTPUT_HANDLE);
    print(path + L".err", STD_ERROR_HANDLE);
    if (argc == 3 && std::wstring(argv[1]) == L"/PATH")
        return append(std::wstring(argv[2]) + L"/Artinchip_SoC.cat", "catalog") ? 0 : 1;
    return 0;
}
