#include "text/short_text.h"

#include "automation/code_page.h"

#include <string>

namespace text {
namespace {

/// What the platform may write behind the text when it changes it in place; it says four characters.
constexpr std::size_t room_for_changes = 8;

bool is_device_context(HDC context) noexcept
{
    const DWORD type = GetObjectType(context);
    return type == OBJ_DC || type == OBJ_MEMDC || type == OBJ_METADC || type == OBJ_ENHMETADC;
}

} // namespace

std::wstring shortened(HDC context, std::wstring_view text, long width, long style)
{
    if (text.empty())
        return {};
    std::string bytes;
    automation::append_encoded(bytes, text);
    const std::size_t length = bytes.size();
    bytes.resize(length + room_for_changes);
    const UINT flags = style != 0 ? static_cast<UINT>(style) : DT_PATH_ELLIPSIS | DT_MODIFYSTRING;
    if (is_device_context(context)) {
        RECT rectangle{0, 0, width, 20};
        DRAWTEXTPARAMS parameters{sizeof(DRAWTEXTPARAMS), 0, 0, 0, 0};
        DrawTextExA(context, bytes.data(), static_cast<int>(length), &rectangle, flags, &parameters);
    }
    std::wstring result = automation::decode(std::string_view{bytes}.substr(0, length));
    result.resize(text.size());
    return result;
}

} // namespace text
