#include "text/numeric_text.h"

#include <windows.h>

#include <oleauto.h>

#include <array>
#include <string>

namespace text {

bool is_numeric(std::wstring_view text)
{
    std::array<BYTE, 1024> digits;
    // The platform's parser does not everywhere keep hexadecimal digits within the buffer that it is given.
    const bool too_long_for_a_radix = text.size() >= digits.size() && text.find(L'&') != text.npos;
    if (text.empty() || too_long_for_a_radix)
        return false;

    std::wstring terminated{text};
    NUMPARSE parsed{};
    parsed.cDig = static_cast<INT>(digits.size());
    parsed.dwInFlags = NUMPRS_STD;
    return SUCCEEDED(VarParseNumFromStr(terminated.data(), LOCALE_USER_DEFAULT, 0, &parsed, digits.data()))
           && static_cast<std::size_t>(parsed.cchUsed) == text.size();
}

bool is_digit(wchar_t character)
{
    // The parser finds no number without a digit: a sign, a separator, a currency symbol, a bracket, a blank or an exponent's
    // letter alone is none. Beyond ASCII it knows digits of its own, such as the full-width ones of East Asia.
    if (character < 0x80)
        return character >= L'0' && character <= L'9';
    return is_numeric({&character, 1});
}

} // namespace text
