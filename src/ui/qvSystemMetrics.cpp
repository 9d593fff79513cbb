#include "ui/qvSystemMetrics.h"

#include "messages/MErrors.h"
#include "ui/device.h"
#include "ui/line_table.h"

namespace {

using Line = faces::qvSystemMetrics_line;

/// What a metric is: a horizontal or a vertical length, or none.
enum class Kind : unsigned char { Horizontal, Vertical, Other };

struct Metric {
    Line line;
    unsigned char index; ///< of the platform
    Kind kind;
};

constexpr Metric metrics[]{
    {Line::ScreenX, SM_CXSCREEN, Kind::Horizontal},
    {Line::ScreenY, SM_CYSCREEN, Kind::Vertical},
    {Line::ScrollXH, SM_CXHSCROLL, Kind::Horizontal},
    {Line::ScrollYV, SM_CYVSCROLL, Kind::Vertical},
    {Line::ScrollXV, SM_CXVSCROLL, Kind::Horizontal},
    {Line::ScrollYH, SM_CYVSCROLL, Kind::Vertical}, // not that of a horizontal scroll bar: clients reckon with it
    {Line::CaptionY, SM_CYCAPTION, Kind::Vertical},
    {Line::BorderX, SM_CXBORDER, Kind::Horizontal},
    {Line::BorderY, SM_CYBORDER, Kind::Vertical},
    {Line::DlgFrameX, SM_CXDLGFRAME, Kind::Horizontal},
    {Line::DlgFrameY, SM_CYDLGFRAME, Kind::Vertical},
    {Line::ThumbYV, SM_CYVTHUMB, Kind::Vertical},
    {Line::ThumbXH, SM_CXHTHUMB, Kind::Horizontal},
    {Line::IconX, SM_CXICON, Kind::Horizontal},
    {Line::IconY, SM_CYICON, Kind::Vertical},
    {Line::CursorX, SM_CXCURSOR, Kind::Horizontal},
    {Line::CursorY, SM_CYCURSOR, Kind::Vertical},
    {Line::MenuY, SM_CYMENU, Kind::Vertical},
    {Line::FullScreenX, SM_CXFULLSCREEN, Kind::Horizontal},
    {Line::FullScreenY, SM_CYFULLSCREEN, Kind::Vertical},
    {Line::KanjiWindowY, SM_CYKANJIWINDOW, Kind::Vertical},
    {Line::MousePresent, SM_MOUSEPRESENT, Kind::Other},
    {Line::DebugF, SM_DEBUG, Kind::Other},
    {Line::MinX, SM_CXMIN, Kind::Horizontal},
    {Line::MinY, SM_CYMIN, Kind::Vertical},
    {Line::SizeX, SM_CXSIZE, Kind::Horizontal},
    {Line::SizeY, SM_CYSIZE, Kind::Vertical},
    {Line::FrameX, SM_CXFRAME, Kind::Horizontal},
    {Line::FrameY, SM_CYFRAME, Kind::Vertical},
    {Line::MinTrackX, SM_CXMINTRACK, Kind::Horizontal},
    {Line::MinTrackY, SM_CYMINTRACK, Kind::Vertical},
    {Line::DoubleClkX, SM_CXDOUBLECLK, Kind::Horizontal},
    {Line::DoubleClkY, SM_CYDOUBLECLK, Kind::Vertical},
    {Line::IconSpacingX, SM_CXICONSPACING, Kind::Horizontal},
    {Line::IconSpacingY, SM_CYICONSPACING, Kind::Vertical},
    {Line::MenuDropAlignment, SM_MENUDROPALIGNMENT, Kind::Other},
    {Line::PenWindows, SM_PENWINDOWS, Kind::Other},
    {Line::DbcEnabled, SM_DBCSENABLED, Kind::Other},
    {Line::MouseButtons, SM_CMOUSEBUTTONS, Kind::Other},
    {Line::Metrics, 76, Kind::Other}, // the number of metrics in times past, the left edge of all screens today
    {Line::SizeFrameX, SM_CXSIZEFRAME, Kind::Horizontal},
    {Line::SizeFrameY, SM_CYSIZEFRAME, Kind::Vertical},
    {Line::FixedFrameX, SM_CXFIXEDFRAME, Kind::Horizontal},
    {Line::FixedFrameY, SM_CYFIXEDFRAME, Kind::Vertical},
};
static_assert(ui::in_order(metrics));

} // namespace

void qvSystemMetrics::put_ScaleMode(short value)
{
    constexpr short twips = 1, pixels = 3;
    if (value == pixels) {
        x_ = y_ = 1;
    } else if (value == twips) {
        const device::Area screen = device::screen_area();
        const auto x = device::rounded<short>(screen.width.twips_per_pixel());
        y_ = device::rounded<short>(screen.height.twips_per_pixel());
        x_ = x;
    } else {
        throw automation::Error{MErrors::ToObjectError(1), MErrors::LangStr(10012)};
    }
}

long qvSystemMetrics::line(Line line) const
{
    const Metric metric = metrics[static_cast<std::size_t>(line)];
    const long factor = metric.kind == Kind::Horizontal ? x_ : metric.kind == Kind::Vertical ? y_ : 1;
    long length = 0;
    if (__builtin_mul_overflow(static_cast<long>(GetSystemMetrics(metric.index)), factor, &length))
        throw automation::Error{automation::Runtime::Overflow};
    return length;
}
