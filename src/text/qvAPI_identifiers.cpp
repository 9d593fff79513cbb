#include "text/qvAPI_identifiers.h"

#include "automation/border.h"
#include "automation/code_page.h"
#include "messages/MErrors.h"
#include "text/hex_digits.h"

#include <algorithm>
#include <bit>
#include <iterator>

namespace {

/// A character of several bytes has a code beyond any byte's.
int ansi_code(wchar_t character)
{
    std::string bytes;
    automation::append_encoded(bytes, {&character, 1});
    int code = 0;
    for (const char byte : bytes)
        code = code << 8 | static_cast<unsigned char>(byte);
    return code;
}

unsigned char byte_from(std::wstring_view digits)
{
    constexpr std::int32_t too_long = 101, overflow = static_cast<std::int32_t>(automation::Runtime::Overflow);
    constexpr std::int32_t overflow_text = 10005;
    if (digits.size() > 2)
        throw automation::Error{too_long, MErrors::LangStr(overflow_text)};
    const int value = text::hex_value(digits, ansi_code);
    if (value < 0 || value > 0xFF)
        throw automation::Error{overflow, MErrors::LangStr(overflow_text)};
    return static_cast<unsigned char>(value);
}

std::wstring text_of(const GUID& guid, bool in_braces)
{
    constexpr std::size_t length = 38;
    wchar_t text[length + 1];
    StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
    return in_braces ? std::wstring{text, length} : std::wstring{text + 1, length - 2};
}

} // namespace

unsigned char qvAPI_identifiers::HexToByte(std::wstring_view sStr)
{
    return byte_from(sStr);
}

std::wstring qvAPI_identifiers::CreateGUID(bool fKlammer)
{
    GUID guid;
    automation::check(CoCreateGuid(&guid));
    return text_of(guid, fKlammer);
}

std::wstring qvAPI_identifiers::StringFromGUID(const tGUID& Guid, bool fKlammer)
{
    return text_of(std::bit_cast<GUID>(Guid), fKlammer);
}

void qvAPI_identifiers::GUIDFromString(std::wstring_view Str, tGUID& Guid)
{
    tGUID read; // until the last digit is known to be one, the client's stays
    std::ranges::transform(text::guid_digits(Str), read.bytes, byte_from);
    Guid = read;
}
