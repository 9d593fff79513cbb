#pragma once

#include "support/client.h"
#include "support/dispatch_object.h"

#include <qvObjects.h>

#include <commctrl.h> // behind the contract, whose enumerators have the names of its macros

#include <cstring>
#include <optional>

/// Windows as a client has them, and what goes on between them and their tooltips.
namespace client {

/// Handles the thread's messages until something holds, for so many hundredths of a second at most.
template <class Condition>
bool pump_until(Condition&& holds, int at_most = 200)
{
    for (int i = 0; i < at_most && !holds(); ++i) {
        for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);)
            DispatchMessageW(&message);
        Sleep(10);
    }
    return holds();
}

/// A visible window with a procedure of its own, which notes the codes of the notifications that reach it.
class ParentWindow {
public:
    /// Of a class for texts in Unicode or in the code page.
    explicit ParentWindow(bool is_unicode = true)
    {
        const HINSTANCE program = GetModuleHandleW(nullptr);
        constexpr DWORD style = WS_POPUP | WS_VISIBLE;
        if (is_unicode) {
            const WNDCLASSW window_class{0, &procedure, 0, 0, program, nullptr, nullptr, nullptr, nullptr, L"qvTipParent"};
            RegisterClassW(&window_class);
            handle_ = CreateWindowW(L"qvTipParent", L"", style, 50, 50, 300, 200, nullptr, nullptr, program, nullptr);
        } else {
            const WNDCLASSA window_class{0, &procedure, 0, 0, program, nullptr, nullptr, nullptr, nullptr, "qvTipParentA"};
            RegisterClassA(&window_class);
            handle_ = CreateWindowA("qvTipParentA", "", style, 50, 50, 300, 200, nullptr, nullptr, program, nullptr);
        }
        SetWindowLongPtrW(handle_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        own_procedure_ = current_procedure();
    }
    ~ParentWindow() { destroy(); }
    ParentWindow(const ParentWindow&) = delete;
    ParentWindow& operator=(const ParentWindow&) = delete;

    HWND handle() const { return handle_; }
    operator Value() const { return Value{static_cast<long>(reinterpret_cast<LONG_PTR>(handle_))}; }
    void destroy()
    {
        if (IsWindow(handle_))
            DestroyWindow(handle_);
    }
    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return SendMessageA(handle_, message, wParam, lParam);
    }
    /// Whether its own procedure, and none before it, gets its messages.
    bool has_own_procedure() const { return current_procedure() == own_procedure_; }
    /// Whether messages still reach its own procedure.
    bool answers() const { return send(WM_APP) == 42; }
    HANDLE property(const char* name) const { return GetPropA(handle_, name); }

    std::vector<int> notified; ///< codes

private:
    LONG_PTR current_procedure() const { return GetWindowLongPtrA(handle_, GWLP_WNDPROC); }

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        auto* const self = reinterpret_cast<ParentWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message == WM_APP)
            return 42;
        if (self && message == WM_NOTIFY && lParam > 0xFFFF)
            self->notified.push_back(static_cast<int>(reinterpret_cast<const NMHDR*>(lParam)->code));
        return IsWindowUnicode(window) ? DefWindowProcW(window, message, wParam, lParam)
                                       : DefWindowProcA(window, message, wParam, lParam);
    }

    HWND handle_ = nullptr;
    LONG_PTR own_procedure_ = 0;
};

/// A tooltip object and what its events tell.
class ToolTip {
public:
    ToolTip() : object{Object::create(L"qvObjects.qvToolTip")}
    {
        IConnectionPointContainer* container = nullptr;
        EXPECT_EQ(object.dispatch()->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container)), S_OK);
        EXPECT_EQ(container->FindConnectionPoint(__uuidof(__qvToolTip), &point_), S_OK);
        container->Release();
        EXPECT_EQ(point_->Advise(&sink_, &cookie_), S_OK);
    }
    /// One whose tooltip window is there.
    explicit ToolTip(long style) : ToolTip{} { object.call(L"Init", {style}); }
    ~ToolTip() { let_go(); }

    /// Gives up every reference to the object.
    void let_go()
    {
        if (!point_)
            return;
        point_->Unadvise(cookie_);
        std::exchange(point_, nullptr)->Release();
        object = Object{};
    }
    HWND window() const { return reinterpret_cast<HWND>(static_cast<LONG_PTR>(object.call(L"hwnd").number())); }
    /// Has the tooltip ask a window for a tool's text: the record that comes back.
    NMTTDISPINFOA ask(const ParentWindow& parent, long id, HWND sender = nullptr) const
    {
        NMTTDISPINFOA record;
        std::memset(&record, 0x55, sizeof record);
        record.hdr = {sender ? sender : window(), static_cast<UINT_PTR>(id), static_cast<UINT>(TTN_GETDISPINFOA)};
        parent.send(WM_NOTIFY, static_cast<WPARAM>(id), reinterpret_cast<LPARAM>(&record));
        return record;
    }
    LRESULT notify(const ParentWindow& parent, long id, UINT code) const
    {
        NMHDR header{window(), static_cast<UINT_PTR>(id), code};
        return parent.send(WM_NOTIFY, static_cast<WPARAM>(id), reinterpret_cast<LPARAM>(&header));
    }

    Object object;
    std::vector<std::wstring> heard; ///< "NeedText 7" and so on
    std::wstring answer = L"on demand";
    long return_code = 0;
    std::function<void()> handler = [] {}; ///< of the next event

private:
    HRESULT hear(DISPID event, const DISPPARAMS& arguments)
    {
        constexpr const wchar_t* names[]{L"?", L"NeedText ", L"POP ", L"SHOW "};
        const VARIANTARG &id = arguments.rgvarg[arguments.cArgs - 1], &changed = arguments.rgvarg[0];
        EXPECT_EQ(id.vt, VT_I4);
        heard.push_back(names[event] + std::to_wstring(id.lVal));
        std::exchange(handler, [] {})();
        if (event == 1) {
            EXPECT_EQ(changed.vt, VT_BYREF | VT_BSTR);
            SysReAllocStringLen(changed.pbstrVal, answer.data(), static_cast<UINT>(answer.size()));
        } else if (event == 3) {
            EXPECT_EQ(changed.vt, VT_BYREF | VT_I4);
            *changed.plVal = return_code;
        }
        return E_FAIL; // which is the handler's own affair
    }

    DispatchObject sink_{{L"NeedText"}, [this](DISPID event, auto& arguments, VARIANT*) { return hear(event, arguments); }};
    IConnectionPoint* point_ = nullptr;
    DWORD cookie_ = 0;
};

/// Sees what is sent to a tooltip window, and answers in its place where told to.
class Watched {
public:
    struct Sent {
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
        TTTOOLINFOA tool; ///< at lParam, where the message has one there
        std::string text; ///< of the tool
    };

    explicit Watched(HWND window) : window_{window}
    {
        SetPropA(window, "watcher", this);
        former_ = reinterpret_cast<WNDPROC>(SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&procedure)));
    }
    ~Watched() { SetWindowLongPtrA(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former_)); }
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;

    std::vector<Sent> sent;
    std::optional<LRESULT> answer; ///< for all of them

private:
    static bool has_tool(UINT message)
    {
        constexpr UINT messages[]{TTM_ADDTOOLA,  TTM_DELTOOLA,       TTM_NEWTOOLRECTA, TTM_GETTOOLINFOA,
                                  TTM_GETTEXTA,  TTM_UPDATETIPTEXTA, TTM_TRACKACTIVATE};
        return std::ranges::find(messages, message) != std::end(messages);
    }
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        auto& self = *static_cast<Watched*>(GetPropA(window, "watcher"));
        if (message >= WM_USER && message < WM_USER + 64) {
            Sent one{message, wParam, lParam, {}, {}};
            if (has_tool(message)) {
                std::memcpy(&one.tool, reinterpret_cast<const void*>(lParam), 44);
                if (one.tool.lpszText && one.tool.lpszText != LPSTR_TEXTCALLBACKA)
                    one.text = one.tool.lpszText;
            }
            self.sent.push_back(one);
            if (self.answer)
                return *self.answer;
        }
        return CallWindowProcA(self.former_, window, message, wParam, lParam);
    }

    HWND window_;
    WNDPROC former_;
};

} // namespace client
