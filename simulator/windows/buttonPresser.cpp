#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

// A hand for the windows of other programs, such as an installer:
//
//   wait TEXT SECONDS     until a button with this text can be pressed
//   press TEXT SECONDS    the same, and presses it
//
// Texts are compared without the marks of their keys. When the time is over it prints the texts of all
// windows, and ends with 1.

namespace {

struct Control
{
    HWND window;
    std::string text;
};

std::string textOf(HWND window)
{
    char buffer[512] = "";
    DWORD_PTR length = 0;
    SendMessageTimeoutA(window, WM_GETTEXT, sizeof buffer, reinterpret_cast<LPARAM>(buffer), SMTO_ABORTIFHUNG,
                        1000, &length);
    std::string text = buffer;
    text.erase(std::remove(text.begin(), text.end(), '&'), text.end());
    return text;
}

bool isButton(HWND window)
{
    char name[64] = "";
    GetClassNameA(window, name, sizeof name);
    return std::strcmp(name, "Button") == 0;
}

BOOL CALLBACK takeControl(HWND window, LPARAM list)
{
    if (IsWindowVisible(window))
        reinterpret_cast<std::vector<Control> *>(list)->push_back({window, textOf(window)});
    return TRUE;
}

BOOL CALLBACK takeWindow(HWND window, LPARAM list)
{
    if (!IsWindowVisible(window))
        return TRUE;
    takeControl(window, list);
    EnumChildWindows(window, takeControl, list);
    return TRUE;
}

std::vector<Control> visibleControls()
{
    std::vector<Control> controls;
    EnumWindows(takeWindow, reinterpret_cast<LPARAM>(&controls));
    return controls;
}

HWND pressableButton(const std::string &text)
{
    for (const Control &control : visibleControls()) {
        if (control.text == text && isButton(control.window) && IsWindowEnabled(control.window))
            return control.window;
    }
    return nullptr;
}

HWND waitForButton(const std::string &text, int seconds)
{
    for (int left = seconds * 10; left > 0; --left) {
        if (HWND button = pressableButton(text))
            return button;
        Sleep(100);
    }
    return nullptr;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 4) {
        std::fputs("usage: wait|press TEXT SECONDS\n", stderr);
        return 2;
    }
    const HWND button = waitForButton(argv[2], std::atoi(argv[3]));
    if (!button) {
        std::fprintf(stderr, "There is no button \"%s\", but:\n", argv[2]);
        for (const Control &control : visibleControls())
            std::fprintf(stderr, "  %s\n", control.text.c_str());
        return 1;
    }
    if (std::strcmp(argv[1], "press") == 0)
        PostMessageA(button, BM_CLICK, 0, 0);
    return 0;
}
