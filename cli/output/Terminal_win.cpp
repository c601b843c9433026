#include "cli/output/Terminal.h"

#include <windows.h>

namespace {

bool isConsole(DWORD stream)
{
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

} // namespace

bool Terminal::canAsk()
{
    return isConsole(STD_INPUT_HANDLE) && isConsole(STD_OUTPUT_HANDLE);
}

int Terminal::width()
{
    if (!isConsole(STD_OUTPUT_HANDLE))
        return 0;
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    // Let the console take UTF-8 and the escape sequences for colours. Other consoles are not affected.
    SetConsoleOutputCP(CP_UTF8);
    DWORD mode = 0;
    GetConsoleMode(output, &mode);
    SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    CONSOLE_SCREEN_BUFFER_INFO info{};
    return GetConsoleScreenBufferInfo(output, &info) != 0 ? info.dwSize.X : 80;
}

std::optional<QByteArray> Terminal::readTyped()
{
    char bytes[256];
    DWORD count = 0;
    if (ReadFile(GetStdHandle(STD_INPUT_HANDLE), bytes, sizeof bytes, &count, nullptr) == 0 || count == 0)
        return std::nullopt;
    return QByteArray(bytes, static_cast<int>(count));
}
