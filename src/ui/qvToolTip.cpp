#include "ui/qvToolTip.h"

#include "automation/ansi_call.h"
#include "automation/handle.h"

#include <commctrl.h>

#include <algorithm>
#include <limits>
#include <utility>

using automation::handle_from;
using automation::Variant;
using automation::view;

namespace {

/// The record that names a tool.
TTTOOLINFOA tool_of(long hwnd, long id) noexcept
{
    TTTOOLINFOA tool{};
    tool.cbSize = TTTOOLINFOA_V2_SIZE; // which every release of the system's controls knows
    tool.hwnd = handle_from<HWND>(hwnd);
    tool.uId = static_cast<UINT_PTR>(id);
    return tool;
}

/// The same as the tool was added.
TTTOOLINFOA library_tool(long hwnd, long id) noexcept
{
    TTTOOLINFOA tool = tool_of(hwnd, id);
    tool.hinst = automation::module::handle();
    return tool;
}

WPARAM as_parameter(bool flag) noexcept
{
    return static_cast<WPARAM>(flag ? VARIANT_TRUE : VARIANT_FALSE);
}

const void* as_pointer(long number) noexcept
{
    return handle_from<const void*>(number);
}

} // namespace

/// Room for what the tooltip copies without asking how much there is. A text that a handler gives meanwhile is cut to it.
class qvToolTip::TextBuffer {
public:
    explicit TextBuffer(qvToolTip& owner)
        : owner_{owner}, bytes_(std::max(owner.longest_text_, at_least), '\0'),
          outer_room_{std::exchange(owner.room_for_text_, bytes_.size())}
    {
    }
    ~TextBuffer() { owner_.room_for_text_ = outer_room_; }
    TextBuffer(const TextBuffer&) = delete;
    TextBuffer& operator=(const TextBuffer&) = delete;

    char* data() noexcept { return bytes_.data(); }
    /// The text in it.
    std::wstring text() const { return automation::decode(bytes_.c_str()); }

private:
    static constexpr std::size_t at_least = 4096; // also for texts that others have given the tooltip

    qvToolTip& owner_;
    std::string bytes_;
    const std::size_t outer_room_;
};

long qvToolTip::send(UINT message, WPARAM wParam, const void* lParam) const
{
    return window_.get() ? SendMessageA(window_.get(), message, wParam, reinterpret_cast<LPARAM>(lParam)) : 0;
}

void qvToolTip::Init(TT_STYLE Style)
{
    try {
        window_.create(Style);
    } catch (const automation::Error&) { // a system without these controls: nothing will be shown
    }
}

void qvToolTip::put_DelayTime(TT_Timing& DTType, long value)
{
    send(TTM_SETDELAYTIME, DTType, as_pointer(value));
}

long qvToolTip::get_DelayTime(TT_Timing& DTType)
{
    return send(TTM_GETDELAYTIME, DTType);
}

void qvToolTip::newToolRect(const RECT& ToolRect, long& hwnd, long& ID)
{
    TTTOOLINFOA tool = tool_of(hwnd, ID);
    tool.rect = ToolRect;
    send(TTM_NEWTOOLRECTA, 0, &tool);
}

Variant qvToolTip::GetMargin(long& TopText, long& LeftText, long& BottomText, long& RightText)
{
    if (!window_.get())
        return {};
    RECT margin{};
    send(TTM_GETMARGIN, 0, &margin);
    TopText = margin.top;
    LeftText = margin.left;
    BottomText = margin.bottom;
    RightText = margin.right;
    return {};
}

Variant qvToolTip::SetMargin(long& TopText, long& LeftText, long& BottomText, long& RightText)
{
    const RECT margin{LeftText, TopText, RightText, BottomText};
    send(TTM_SETMARGIN, 0, &margin);
    return {};
}

long qvToolTip::BubbleSize(long& hwnd, long& ID)
{
    TTTOOLINFOA tool = library_tool(hwnd, ID);
    TextBuffer buffer{*this};
    tool.lpszText = buffer.data();
    return send(TTM_GETTOOLINFOA, 0, &tool) != 0 ? -1 : 0;
}

long qvToolTip::HitTest(long& xPos, long& yPos, long& hwnd)
{
    TextBuffer buffer{*this};
    TTHITTESTINFOA test{};
    test.hwnd = handle_from<HWND>(hwnd);
    test.pt = {xPos, yPos};
    test.ti = tool_of(0, 0);
    test.ti.lpszText = buffer.data();
    return send(TTM_HITTESTA, 0, &test) != 0 ? static_cast<long>(test.ti.uId) : 0;
}

bool qvToolTip::AdjustRect(bool fLarger, RECT& rectOut)
{
    return send(TTM_ADJUSTRECT, as_parameter(fLarger), &rectOut) != 0;
}

bool qvToolTip::SetTrackActivate(bool Activate, long hwnd, long ID)
{
    const TTTOOLINFOA tool = tool_of(hwnd, ID);
    return send(TTM_TRACKACTIVATE, as_parameter(Activate), &tool) != 0;
}

/// Clients know x in the high word, where the platform has y.
bool qvToolTip::SetTrackPosition(long ScreenXPos, long ScreenYPos)
{
    if (!window_.get())
        return false;
    const double position = ScreenXPos * 65536.0 + ScreenYPos;
    if (position < std::numeric_limits<long>::min() || position > std::numeric_limits<long>::max())
        throw automation::Error{automation::Runtime::Overflow};
    return send(TTM_TRACKPOSITION, 0, as_pointer(static_cast<long>(position))) != 0;
}

bool qvToolTip::AddTTRect(long& hwnd, long& Left, long& Top, long& Right, long& Bottom, BSTR& TTText, TT_Flags fl, long ID)
{
    if (!window_.get())
        return false;
    return add({Left, Top, Right, Bottom}, hwnd, fl, ID, handed_over(view(TTText)).c_str());
}

bool qvToolTip::AddTTRectCB(long& hwnd, long& Left, long& Top, long& Right, long& Bottom, TT_Flags fl, long ID)
{
    if (!window_.get())
        return false;
    window_.hook(handle_from<HWND>(hwnd));
    return add({Left, Top, Right, Bottom}, hwnd, fl, ID, LPSTR_TEXTCALLBACKA);
}

bool qvToolTip::add(const RECT& rectangle, long hwnd, TT_Flags flags, long tool, const char* text) const
{
    TTTOOLINFOA added = library_tool(hwnd, tool);
    added.uFlags = static_cast<UINT>(flags) | TTF_SUBCLASS;
    added.rect = rectangle;
    added.lpszText = const_cast<char*>(text);
    return send(TTM_ADDTOOLA, 0, &added) != 0;
}

std::string qvToolTip::handed_over(std::wstring_view text)
{
    std::string bytes;
    automation::append_encoded(bytes, text);
    longest_text_ = std::max(longest_text_, bytes.size());
    return bytes;
}

long qvToolTip::get_Count()
{
    return send(TTM_GETTOOLCOUNT);
}

bool qvToolTip::DeleteTT(long ID)
{
    const TTTOOLINFOA tool = library_tool(0, ID);
    return send(TTM_DELTOOLA, 0, &tool) != 0;
}

bool qvToolTip::SetNewTTPos(long ID, long& Left, long& Top, long& Right, long& Bottom)
{
    TTTOOLINFOA tool = library_tool(0, ID);
    tool.rect = {Left, Top, Right, Bottom};
    return send(TTM_NEWTOOLRECTA, 0, &tool) != 0;
}

bool qvToolTip::Update()
{
    return send(TTM_UPDATE) != 0;
}

bool qvToolTip::SetTitle(BSTR& Titel, TT_TITELICON& Icon)
{
    std::string title;
    automation::append_encoded(title, view(Titel));
    return send(TTM_SETTITLEA, Icon, title.c_str()) != 0;
}

std::wstring qvToolTip::get_Text(long ID, long hwnd)
{
    TTTOOLINFOA tool = tool_of(hwnd, ID);
    TextBuffer buffer{*this};
    tool.lpszText = buffer.data();
    send(TTM_GETTEXTA, 0, &tool);
    return buffer.text();
}

void qvToolTip::put_Text(long ID, long hwnd, std::wstring_view value)
{
    std::string text = handed_over(value);
    TTTOOLINFOA tool = tool_of(hwnd, ID);
    tool.lpszText = text.data();
    send(TTM_UPDATETIPTEXTA, 0, &tool);
}

long qvToolTip::get_BackColor()
{
    return send(TTM_GETTIPBKCOLOR);
}

void qvToolTip::put_BackColor(long value)
{
    send(TTM_SETTIPBKCOLOR, static_cast<WPARAM>(value));
}

long qvToolTip::get_FontColor()
{
    return send(TTM_GETTIPTEXTCOLOR);
}

void qvToolTip::put_FontColor(long value)
{
    send(TTM_SETTIPTEXTCOLOR, static_cast<WPARAM>(value));
}

long qvToolTip::get_MaxTipWidth()
{
    return send(TTM_GETMAXTIPWIDTH);
}

void qvToolTip::put_MaxTipWidth(long value)
{
    send(TTM_SETMAXTIPWIDTH, static_cast<WPARAM>(value), as_pointer(value));
}

long qvToolTip::get_hwnd() const noexcept
{
    return static_cast<long>(reinterpret_cast<LONG_PTR>(window_.get()));
}

void qvToolTip::put_Enabled(bool value)
{
    if (!window_.get())
        return;
    enabled_ = value;
    send(TTM_ACTIVATE, as_parameter(value));
}

const char* qvToolTip::text_on_demand(long tool)
{
    constexpr DISPID need_text = 1;
    automation::Text given{L""};
    events().fire(need_text, {automation::argument(tool), automation::by_reference(given)});
    std::string bytes = handed_over(given);
    if (bytes.size() > room_for_text_)
        bytes.resize(automation::without_cut_character({bytes.data(), room_for_text_}).size());
    text_on_demand_ = std::move(bytes);
    return text_on_demand_.c_str();
}

long qvToolTip::shows(long tool)
{
    constexpr DISPID show = 3;
    long code = 0;
    events().fire(show, {automation::argument(tool), automation::by_reference(code)});
    return code;
}

void qvToolTip::pops(long tool)
{
    constexpr DISPID pop = 2;
    events().fire(pop, {automation::argument(tool)});
}
