#include "text/short_text.h"

#include <new>
#include <vector>

namespace text {
namespace {

/// What the platform may write behind the text when it changes it in place; it says four characters.
constexpr std::size_t room_for_changes = 8;

bool is_device_context(HDC context) noexcept
{
    const DWORD type = GetObjectType(context);
    return type == OBJ_DC || type == OBJ_MEMDC || type == OBJ_METADC || type == OBJ_ENHMETADC;
}

/// Bytes in the system's code page, with room behind them.
struct AnsiBuffer {
    std::vector<char> bytes;
    int length;
};

AnsiBuffer ansi_buffer(std::wstring_view text)
{
    const auto characters = static_cast<int>(text.size());
    const int length = WideCharToMultiByte(CP_ACP, 0, text.data(), characters, nullptr, 0, nullptr, nullptr);
    if (length <= 0)
        throw std::bad_alloc{};
    AnsiBuffer buffer{std::vector<char>(static_cast<std::size_t>(length) + room_for_changes), length};
    WideCharToMultiByte(CP_ACP, 0, text.data(), characters, buffer.bytes.data(), length, nullptr, nullptr);
    return buffer;
}

std::wstring wide(const char* bytes, int length)
{
    // Never more characters than bytes.
    std::wstring text(static_cast<std::size_t>(length), L'\0');
    const int characters = MultiByteToWideChar(CP_ACP, 0, bytes, length, text.data(), length);
    text.resize(static_cast<std::size_t>(characters));
    return text;
}

} // namespace

std::wstring shortened(HDC context, std::wstring_view text, long width, long style)
{
    if (text.empty())
        return {};
    AnsiBuffer buffer = ansi_buffer(text);
    const UINT flags = style != 0 ? static_cast<UINT>(style) : DT_PATH_ELLIPSIS | DT_MODIFYSTRING;
    if (is_device_context(context)) {
        RECT rectangle{0, 0, width, 20};
        DRAWTEXTPARAMS parameters{sizeof(DRAWTEXTPARAMS), 0, 0, 0, 0};
        DrawTextExA(context, buffer.bytes.data(), buffer.length, &rectangle, flags, &parameters);
    }
    std::wstring result = wide(buffer.bytes.data(), buffer.length);
    result.resize(text.size());
    return result;
}

} // namespace text
