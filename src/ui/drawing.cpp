#include "ui/drawing.h"

#include "automation/handle.h"

#include <algorithm>
#include <cstdint>

namespace drawing {
namespace {

using Bitmap = automation::Handle<automation::NullMeansNone<HBITMAP, &DeleteObject>>;

/// The part at the lower right of an area inside its edge, no larger than that.
RECT corner_of(const RECT& area, SIZE size)
{
    const std::int64_t edge_x = GetSystemMetrics(SM_CXEDGE), edge_y = GetSystemMetrics(SM_CYEDGE);
    const std::int64_t right = area.right - edge_x, bottom = area.bottom - edge_y;
    const std::int64_t left = std::max(area.left + edge_x, right - size.cx), top = std::max(area.top + edge_y, bottom - size.cy);
    if (left >= right || top >= bottom)
        return {};
    return {static_cast<LONG>(left), static_cast<LONG>(top), static_cast<LONG>(right), static_cast<LONG>(bottom)};
}

} // namespace

automation::Variant halftone_brush()
{
    constexpr std::uint32_t two_rows = 0xAAAA5555; // of 16 bits each, of which 8 are seen
    constexpr std::uint32_t rows[]{two_rows, two_rows, two_rows, two_rows};
    const Bitmap pattern{CreateBitmap(8, 8, 1, 1, rows)};
    if (!pattern)
        return {};
    return automation::Variant{static_cast<long>(reinterpret_cast<LONG_PTR>(CreatePatternBrush(pattern.get())))};
}

void sunken_edge(HDC context, RECT area, SIZE scroll_bars, bool size_grip)
{
    RECT corner = scroll_bars.cx > 0 && scroll_bars.cy > 0 ? corner_of(area, scroll_bars) : RECT{};
    DrawEdge(context, &area, EDGE_SUNKEN, BF_RECT);
    if (IsRectEmpty(&corner))
        return;
    if (size_grip)
        DrawFrameControl(context, &corner, DFC_SCROLL, DFCS_SCROLLSIZEGRIP);
    else
        FillRect(context, &corner, GetSysColorBrush(COLOR_BTNHIGHLIGHT));
}

} // namespace drawing
