#include "ui/qvForm.h"

#include "automation/client_object.h"
#include "automation/handle.h"
#include "automation/safe_array.h"
#include "ui/control_windows.h"
#include "ui/device.h"
#include "ui/drawing.h"
#include "ui/list_box.h"
#include "ui/position.h"

#include <algorithm>
#include <vector>

namespace {

using automation::get;
using automation::handle_from;
using automation::object_in;
using automation::put;
using automation::Ref;
using automation::to_bool;
using automation::to_double;
using automation::to_long;
using automation::Variant;

/// A colour of the system, as controls take it.
constexpr long system_colour(int index) noexcept
{
    return static_cast<long>(0x80000000u | static_cast<unsigned>(index));
}

long text_length(IDispatch* text_box)
{
    const automation::Text text = automation::to_text(get(text_box, L"Text"));
    return static_cast<long>(std::wstring_view{text}.size());
}
void move_to_end(IDispatch* text_box)
{
    put(text_box, L"SelStart", Variant{text_length(text_box)});
}

SIZE inner_size(IDispatch* form)
{
    return control_windows::inner_size(handle_from<HWND>(to_long(get(form, L"hwnd"))));
}

/// The positions from 1 of the selected items of a list view, in their order; at most so many.
std::vector<long> selected_items(IDispatch* list_view, std::size_t most)
{
    const Ref items = object_in(get(list_view, L"ListItems"));
    const long count = to_long(get(items.get(), L"Count"));
    std::vector<long> selected;
    for (long i = 1; i <= count && selected.size() < most; ++i) {
        const Ref item = object_in(automation::item(items.get(), Variant{i}));
        if (to_bool(get(item.get(), L"Selected")))
            selected.push_back(i);
    }
    return selected;
}

/// An array of the numbers behind an element that stays empty.
Variant list_behind_empty(const std::vector<long>& numbers)
{
    Variant list = automation::new_array(VT_VARIANT, numbers.size() + 1);
    const automation::LockedArray<VARIANT> elements{list.parray};
    for (std::size_t i = 0; i < numbers.size(); ++i)
        elements[i + 1] = Variant{numbers[i]};
    return list;
}

} // namespace

bool qvForm::Box_Sel(IDispatch* Box)
{
    return list_box::has_selection(Box);
}

Variant qvForm::GetSelectedListItem(IDispatch* Box)
{
    const Ref list_view{Box};
    if (to_bool(get(Box, L"MultiSelect")))
        return list_behind_empty(selected_items(Box, SIZE_MAX));
    const std::vector<long> selected = selected_items(Box, 1);
    return selected.empty() ? Variant{} : Variant{selected[0]};
}

long qvForm::InWidthPix(IDispatch* frm)
{
    return inner_size(frm).cx;
}

long qvForm::InHeightPix(IDispatch* frm)
{
    return inner_size(frm).cy;
}

long qvForm::InWidthTwp(IDispatch* frm)
{
    return device::rounded<long>(inner_size(frm).cx * device::screen_area().width.twips_per_pixel());
}

long qvForm::InHeightTwp(IDispatch* frm)
{
    return device::rounded<long>(inner_size(frm).cy * device::screen_area().height.twips_per_pixel());
}

void qvForm::SetListviewStyle(long CtlHwnd, long Style, bool AddStyle)
{
    control_windows::change_list_view_style(handle_from<HWND>(CtlHwnd), Style, AddStyle);
}

bool qvForm::SetToolBarStyle(long CtlHwnd, long Style, bool AddStyle)
{
    return control_windows::change_tool_bar_style(handle_from<HWND>(CtlHwnd), Style, AddStyle);
}

long qvForm::SetRedrawMode(long hwnd, bool fAllowRedraw, bool fRefresh)
{
    return control_windows::set_redraw(handle_from<HWND>(hwnd), fAllowRedraw, fRefresh);
}

Variant qvForm::GetHalftoneBrush()
{
    return drawing::halftone_brush();
}

void qvForm::AddText2Ctrl(IDispatch* obj, std::wstring_view sText, bool fMoveToLastLine, long lColor)
{
    const Ref text_box{obj};
    const Variant appended{sText};
    const long start = text_length(obj), length = static_cast<long>(sText.size());
    put(obj, L"SelStart", Variant{start});
    put(obj, L"SelText", appended);
    constexpr long normal = system_colour(COLOR_WINDOWTEXT);
    if (lColor != normal) {
        put(obj, L"SelStart", Variant{start});
        put(obj, L"SelLength", Variant{length});
        put(obj, L"SelColor", Variant{lColor});
        move_to_end(obj);
        put(obj, L"SelColor", Variant{normal}); // of what is typed later
    }
    if (fMoveToLastLine)
        move_to_end(obj);
}

void qvForm::EnableVbWindow(IDispatch* objWindow, bool fEnable)
{
    const Ref control{objWindow};
    put(objWindow, L"Enabled", Variant{fEnable});
    put(objWindow, L"BackColor", Variant{system_colour(fEnable ? COLOR_WINDOW : COLOR_BTNFACE)});
}

long qvForm::Box_Copy(IDispatch* Box1, IDispatch* Box2, bool fAlles)
{
    return list_box::copy(Box1, Box2, fAlles);
}

long qvForm::Box_Move(IDispatch* Box1, IDispatch* Box2, bool fAlles)
{
    return list_box::move(Box1, Box2, fAlles);
}

bool qvForm::Box_Sort(IDispatch* Box, long Spalte)
{
    return list_box::sort(Box, Spalte);
}

long qvForm::Box_Del(IDispatch* Box)
{
    return list_box::remove_selected(Box);
}

void qvForm::MoveToForm(IDispatch* frm, IDispatch* obj)
{
    const Ref form{frm}, control{obj};
    const double room_x = to_double(get(frm, L"ScaleWidth")), room_y = to_double(get(frm, L"ScaleHeight"));
    const double left = to_double(get(obj, L"Left")), width = to_double(get(obj, L"Width"));
    const double top = to_double(get(obj, L"Top")), height = to_double(get(obj, L"Height"));
    if (const double inside = position::inside(left, width, room_x); inside != left)
        put(obj, L"Left", Variant{inside});
    if (const double inside = position::inside(top, height, room_y); inside != top)
        put(obj, L"Top", Variant{inside});
}

std::wstring qvForm::qvCaption(IDispatch* frmCol, std::wstring_view sCaption)
{
    const std::wstring wanted{sCaption};
    std::vector<std::wstring> captions;
    automation::Items forms{frmCol};
    for (Variant form; forms.next(form);)
        captions.emplace_back(automation::to_text(get(object_in(form).get(), L"Caption")));
    std::wstring caption = wanted;
    for (int number = 2; std::ranges::find(captions, caption) != captions.end(); ++number)
        caption = wanted + L":" + std::to_wstring(number);
    return caption;
}

void qvForm::CenterFormToScreen(IDispatch* frm, const VARIANT& dOffset)
{
    const Ref form{frm};
    const double towards = automation::is_missing(dOffset) ? 0 : to_double(dOffset);
    const device::Area screen = device::screen_area();
    const double height = to_double(get(frm, L"Height")), width = to_double(get(frm, L"Width"));
    put(frm, L"Top", Variant{position::between_edges(towards, height, screen.height.twips())});
    put(frm, L"Left", Variant{position::between_edges(towards, width, screen.width.twips())});
}

void qvForm::AddTextRTF(IDispatch* oRTF, std::wstring_view sText, bool fSetCursor)
{
    const Ref text_box{oRTF};
    const Variant appended{sText};
    move_to_end(oRTF);
    put(oRTF, L"SelRTF", appended);
    if (fSetCursor)
        move_to_end(oRTF);
}

void qvForm::Draw3dEdge(long hDC, RECT& r, long lDXscroll, long lDYscroll, bool fSizeGrip)
{
    drawing::sunken_edge(handle_from<HDC>(hDC), r, {lDXscroll, lDYscroll}, fSizeGrip);
}
