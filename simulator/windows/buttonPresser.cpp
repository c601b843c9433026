#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>
#include <vector>

// Operates the windows of another program, such as an installer:
//
//   wait TEXT SECONDS     waits for an enabled button with this text
//   press TEXT SECONDS    waits for it and presses it
//   ticked TEXT SECONDS   waits for a ticked check box with this text; "unticked" for one that is not
//   disabled TEXT SECONDS waits for a disabled button with this text
//   absent TEXT SECONDS   waits until there is a button "Finish" but no button with this text
//
// Texts are compared without "&". When the time is up, it prints the texts of all windows and exits with 1.

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

HWND buttonNamed(const std::string &text, bool enabled = true)
{
    for (const Control &control : visibleControls()) {
        if (control.text == text && isButton(control.window) &&
            (IsWindowEnabled(control.window) != 0) == enabled)
            return control.window;
    }
    return nullptr;
}

bool isTicked(HWND box)
{
    return SendMessageA(box, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

/// Returns whether the condition of `verb` is true. For "press", also presses the button.
bool isDone(const std::string &verb, const std::string &text)
{
    if (verb == "absent")
        return buttonNamed("Finish") && !buttonNamed(text) && !buttonNamed(text, false);
    const HWND button = buttonNamed(text, verb != "disabled");
    if (!button)
        return false;
    if (verb == "ticked" || verb == "unticked")
        return isTicked(button) == (verb == "ticked");
    if (verb == "press")
        PostMessageA(button, BM_CLICK, 0, 0);
    return true;
}

bool waitUntilDone(const std::string &verb, const std::string &text, int seconds)
{
    for (int left = seconds * 10; left > 0; --left) {
        if (isDone(verb, text))
            return true;
        Sleep(100);
    }
    return false;
}

} // namespace

int main(int argc, char *argv[])
{
    const std::set<std::string> verbs{"wait", "press", "ticked", "unticked", "disabled", "absent"};
    if (argc != 4 || verbs.count(argv[1]) == 0) {
        std::fputs("usage: wait|press|ticked|unticked|disabled|absent TEXT SECONDS\n", stderr);
        return 2;
    }
    if (waitUntilDone(argv[1], argv[2], std::atoi(argv[3])))
        return 0;
    std::fprintf(stderr, "The button \"%s\" is not %s. There are:\n", argv[2], argv[1]);
    for (const Control &control : visibleControls())
        std::fprintf(stderr, "  %s\n", control.text.c_str());
    return 1;
}
