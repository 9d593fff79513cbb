#include "automation/case_folding.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <cwctype>
#endif

namespace automation {

wchar_t folded_beyond_latin(wchar_t character) noexcept
{
#ifdef _WIN32
    wchar_t upper = character;
    LCMapStringW(LOCALE_INVARIANT, LCMAP_UPPERCASE, &character, 1, &upper, 1);
    return upper;
#else
    return static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(character)));
#endif
}

bool equal_folded(std::wstring_view one, std::wstring_view other) noexcept
{
    if (one.size() != other.size())
        return false;
    for (std::size_t i = 0; i < one.size(); ++i)
        if (one[i] != other[i] && folded(one[i]) != folded(other[i]))
            return false;
    return true;
}

std::size_t find_folded(std::wstring_view text, std::wstring_view part, std::size_t from) noexcept
{
    if (from > text.size() || part.size() > text.size() - from)
        return std::wstring_view::npos;
    if (part.empty())
        return from;
    const wchar_t first = folded(part.front());
    const std::size_t last = text.size() - part.size();
    for (std::size_t i = from; i <= last; ++i)
        if (folded(text[i]) == first && equal_folded(text.substr(i, part.size()), part))
            return i;
    return std::wstring_view::npos;
}

} // namespace automation
