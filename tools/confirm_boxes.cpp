// Presses the first button of every message box that comes up on this desktop, and prints what the box said: a script that
// shows boxes can so run unattended.

#include <windows.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

namespace {

std::wstring text_of(HWND window)
{
    std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

/// Prints as scripts print: in the console's code page.
void print(const std::wstring& text)
{
    std::string bytes(text.size() * 4, '\0');
    const int size = WideCharToMultiByte(CP_OEMCP, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                                         static_cast<int>(bytes.size()), nullptr, nullptr);
    std::fwrite(bytes.data(), 1, static_cast<std::size_t>(size), stdout);
    std::fflush(stdout);
}

/// A message box holds its text in a static control and its answers in buttons.
void confirm(HWND box)
{
    const HWND button = FindWindowExW(box, nullptr, L"Button", nullptr);
    if (!button)
        return;
    std::wstring message;
    for (HWND part = nullptr; (part = FindWindowExW(box, part, L"Static", nullptr));)
        message += text_of(part);
    print(L"    Message box \"" + text_of(box) + L"\": " + message + L" - answered with " + text_of(button) + L"\n");
    PostMessageW(button, BM_CLICK, 0, 0);
    while (IsWindow(box))
        std::this_thread::sleep_for(std::chrono::milliseconds{10});
}

} // namespace

int main()
{
    for (;;) {
        const HWND box = FindWindowW(L"#32770", nullptr); // the class of dialogs
        if (box && IsWindowVisible(box))
            confirm(box);
        std::this_thread::sleep_for(std::chrono::milliseconds{20});
    }
}
