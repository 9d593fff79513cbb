#pragma once

#include <windows.h>

#include <atomic>
#include <string>
#include <thread>
#include <utility>
#include <vector>

/// Answers the next message boxes of this process as a user would, and tells what the last one showed.
class MessageBoxCatcher {
public:
    /// `answers` are the identifiers of the buttons to press, one for each box.
    explicit MessageBoxCatcher(DWORD patience = 10000, std::vector<int> answers = {IDOK})
        : thread_{[this, patience, answers = std::move(answers)] { wait(patience, answers); }}
    {
    }
    ~MessageBoxCatcher()
    {
        stop_ = true;
        if (thread_.joinable())
            thread_.join();
    }
    MessageBoxCatcher(const MessageBoxCatcher&) = delete;
    MessageBoxCatcher& operator=(const MessageBoxCatcher&) = delete;

    /// Whether there were all of them; waits until the last one was answered.
    bool caught()
    {
        if (thread_.joinable())
            thread_.join();
        return caught_;
    }
    /// Whether there was none up to now.
    bool nothing() const { return !caught_; }

    std::wstring caption, text;
    int icon = 0;    ///< the identifier of a system icon, e.g. 32513 for the critical stop, 32515 for the exclamation
    int buttons = 0; ///< how many there were

private:
    void wait(DWORD patience, const std::vector<int>& answers)
    {
        const DWORD start = GetTickCount();
        HWND last = nullptr;
        for (std::size_t answered = 0; answered < answers.size() && !stop_ && GetTickCount() - start < patience;) {
            HWND box = nullptr;
            EnumWindows(find, reinterpret_cast<LPARAM>(&box));
            if (!box || box == last || !IsWindowVisible(box)) {
                Sleep(10);
                continue;
            }
            last = box;
            record(box);
            caught_ = ++answered == answers.size();
            SendMessageW(box, WM_COMMAND, static_cast<WPARAM>(answers[answered - 1]), 0);
        }
    }
    static BOOL CALLBACK find(HWND window, LPARAM found)
    {
        DWORD process = 0;
        wchar_t name[16] = L"";
        GetWindowThreadProcessId(window, &process);
        GetClassNameW(window, name, 16);
        if (process != GetCurrentProcessId() || std::wstring{name} != L"#32770")
            return TRUE;
        *reinterpret_cast<HWND*>(found) = window;
        return FALSE;
    }
    void record(HWND box)
    {
        icon = buttons = 0;
        text.clear();
        wchar_t buffer[1024];
        caption.assign(buffer, static_cast<std::size_t>(GetWindowTextW(box, buffer, 1024)));
        for (HWND child = GetWindow(box, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
            GetClassNameW(child, buffer, 1024);
            const std::wstring kind = buffer;
            const auto style = GetWindowLongW(child, GWL_STYLE);
            if (kind == L"Button" && (style & WS_VISIBLE))
                ++buttons;
            else if (kind == L"Static" && (style & SS_TYPEMASK) == SS_ICON)
                icon = icon_of(reinterpret_cast<HICON>(SendMessageW(child, STM_GETICON, 0, 0)));
            else if ((kind == L"Static" || kind == L"Edit") && text.empty())
                text.assign(buffer, static_cast<std::size_t>(GetWindowTextW(child, buffer, 1024)));
        }
    }
    static int icon_of(HICON shown)
    {
        for (const int id : {32513, 32514, 32515, 32516})
            if (LoadIconW(nullptr, MAKEINTRESOURCEW(id)) == shown)
                return id;
        return 0;
    }

    std::atomic<bool> stop_{false}, caught_{false};
    std::thread thread_;
};
