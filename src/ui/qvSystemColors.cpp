#include "ui/qvSystemColors.h"

#include "ui/line_table.h"

#include <windows.h>

namespace {

using Line = faces::qvSystemColors_line;

struct Colour {
    Line line;
    int index; ///< of the platform
};

constexpr Colour colours[]{
    {Line::ScrollBar, COLOR_SCROLLBAR},
    {Line::BackGround, COLOR_BACKGROUND},
    {Line::CaptionActive, COLOR_ACTIVECAPTION},
    {Line::CaptionInactive, COLOR_INACTIVECAPTION},
    {Line::Menu, COLOR_MENU},
    {Line::Window, COLOR_WINDOW},
    {Line::WindowFrame, COLOR_WINDOWFRAME},
    {Line::MenuText, COLOR_MENUTEXT},
    {Line::WindowText, COLOR_WINDOWTEXT},
    {Line::CaptionText, COLOR_CAPTIONTEXT},
    {Line::BorderActive, COLOR_ACTIVEBORDER},
    {Line::BorderInactive, COLOR_INACTIVEBORDER},
    {Line::AppWorkspace, COLOR_APPWORKSPACE},
    {Line::HighLight, COLOR_HIGHLIGHT},
    {Line::HighLightText, COLOR_HIGHLIGHTTEXT},
    {Line::BtnFace, COLOR_BTNFACE},
    {Line::BtnShadow, COLOR_BTNSHADOW},
    {Line::BtnText, COLOR_BTNTEXT},
    {Line::GrayText, COLOR_GRAYTEXT},
    {Line::CaptionTextInactive, COLOR_INACTIVECAPTIONTEXT},
    {Line::BtnHighLight, COLOR_BTNHIGHLIGHT},
};
static_assert(ui::in_order(colours));

} // namespace

long qvSystemColors::line(Line line) const
{
    return static_cast<long>(GetSysColor(colours[static_cast<std::size_t>(line)].index));
}
