#pragma once

#include "automation/values.h"

#include <windows.h>

#include <vector>

class qvToolTip;

/// The window procedure that hears the notifications of tooltips, in front of the one that a window had before.
namespace MToolTipCallBack {

/// The tooltip window of an object, and the windows that are hooked for it. A window is hooked once, for all objects that need
/// it, and gets its own procedure back when the last of them goes.
class TooltipWindow {
public:
    explicit TooltipWindow(qvToolTip& owner) noexcept : owner_{owner} {}
    TooltipWindow(const TooltipWindow&) = delete;
    TooltipWindow& operator=(const TooltipWindow&) = delete;
    ~TooltipWindow();

    /// Makes the window, once, with this style. Raises when the system's controls can't be loaded.
    void create(long style);
    /// Null before it is made.
    HWND get() const noexcept { return tooltip_; }

    /// Lets the object hear the notifications that reach a window of this thread. Those of other threads are left alone: a
    /// procedure that runs there can't call the object. Raises 7.
    void hook(HWND parent);

private:
    static LRESULT CALLBACK procedure(HWND parent, UINT message, WPARAM wParam, LPARAM lParam);
    static bool hears(HWND parent, WPARAM wParam, LPARAM lParam, LRESULT& reply);
    static automation::Ref<qvToolTip> listener(HWND parent, HWND sender) noexcept;
    static TooltipWindow* find_hooked(HWND parent, const TooltipWindow* other_than = nullptr) noexcept;
    static bool install(HWND parent) noexcept;
    static void let_go(automation::Ref<qvToolTip> object) noexcept;
    static void CALLBACK let_go_of_retired(HWND, UINT, UINT_PTR timer, DWORD);

    void enter() noexcept;
    void leave() noexcept;
    void name_as_listener(HWND parent) const noexcept;
    bool is_parent(HWND window) const noexcept;
    void unhook(HWND parent) const noexcept;

    qvToolTip& owner_;
    HWND tooltip_ = nullptr;
    DWORD thread_ = 0;
    bool is_retired_ = false; ///< no client has the object any more
    std::vector<HWND> parents_;
    TooltipWindow* next_ = nullptr;
};

} // namespace MToolTipCallBack
