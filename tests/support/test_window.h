#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

namespace client {

/// A window that a client owns. It tells which of the numbered messages came to its own procedure, and leaves all others to the
/// system.
class TestWindow {
public:
    enum Kind { Ansi, Unicode };
    static constexpr UINT first = WM_KEYFIRST, last = WM_KEYLAST; ///< the messages that it tells of, and those from WM_USER on
    static constexpr LRESULT answer = 4711;                       ///< what its procedure makes of those

    struct Message {
        UINT number;
        WPARAM wParam;
        LPARAM lParam;
        friend bool operator==(const Message&, const Message&) = default;
    };

    explicit TestWindow(Kind kind = Ansi, DWORD style = WS_OVERLAPPEDWINDOW) : window_{create(kind, style)}
    {
        EXPECT_TRUE(window_);
        SetPropW(window_, property, this);
    }
    ~TestWindow() { DestroyWindow(window_); }
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;

    HWND handle() const { return window_; }
    /// As clients of automation pass it.
    long number() const { return static_cast<long>(reinterpret_cast<LONG_PTR>(window_)); }
    /// The address of the procedure that gets its messages now, if the system gives it.
    LONG procedure() const
    {
        return IsWindowUnicode(window_) ? GetWindowLongW(window_, GWL_WNDPROC) : GetWindowLongA(window_, GWL_WNDPROC);
    }

    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return SendMessageA(window_, message, wParam, lParam);
    }
    /// What has come since it was last asked.
    std::vector<Message> seen() { return std::exchange(seen_, {}); }

private:
    static constexpr const wchar_t* property = L"TestWindow";

    static HWND create(Kind kind, DWORD style)
    {
        const HINSTANCE program = GetModuleHandleW(nullptr);
        if (kind == Unicode) {
            WNDCLASSW of_wide{};
            of_wide.lpfnWndProc = wide_procedure;
            of_wide.hInstance = program;
            of_wide.lpszClassName = L"qvObjects wide test window";
            RegisterClassW(&of_wide); // unless it is already
            return CreateWindowW(of_wide.lpszClassName, L"", style, 0, 0, 400, 300, nullptr, nullptr, program, nullptr);
        }
        WNDCLASSA of_ansi{};
        of_ansi.lpfnWndProc = ansi_procedure;
        of_ansi.hInstance = program;
        of_ansi.lpszClassName = "qvObjects test window";
        RegisterClassA(&of_ansi);
        return CreateWindowA(of_ansi.lpszClassName, "", style, 0, 0, 400, 300, nullptr, nullptr, program, nullptr);
    }
    static LRESULT CALLBACK wide_procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        return keep(window, message, wParam, lParam) ? answer : DefWindowProcW(window, message, wParam, lParam);
    }
    static LRESULT CALLBACK ansi_procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        return keep(window, message, wParam, lParam) ? answer : DefWindowProcA(window, message, wParam, lParam);
    }
    static bool keep(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        auto* const self = static_cast<TestWindow*>(GetPropW(window, property));
        if (!self || (message < WM_USER && (message < first || message > last)))
            return false;
        self->seen_.push_back({message, wParam, lParam});
        return true;
    }

    std::vector<Message> seen_;
    HWND window_;
};

} // namespace client
