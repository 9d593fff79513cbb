#include "automation/case_folding.h"

#include <array>

#ifdef _WIN32
#include <windows.h>
#else
#include <cwctype>
#endif

namespace automation {
namespace {

wchar_t upper_case(wchar_t character) noexcept
{
#ifdef _WIN32
    wchar_t upper = character;
    LCMapStringW(LOCALE_INVARIANT, LCMAP_UPPERCASE, &character, 1, &upper, 1);
    return upper;
#else
    return static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(character)));
#endif
}

/// Latin-1 in a table: nearly every character is there.
constexpr std::array<wchar_t, 256> latin = [] {
    std::array<wchar_t, 256> table{};
    for (unsigned i = 0; i < table.size(); ++i) {
        const bool lower = (i >= L'a' && i <= L'z') || (i >= 0xE0 && i <= 0xFE && i != 0xF7);
        table[i] = static_cast<wchar_t>(lower ? i - 0x20 : i);
    }
    table[0xFF] = 0x178; // y with diaeresis
    return table;
}();

} // namespace

wchar_t folded(wchar_t character) noexcept
{
    const auto index = static_cast<std::uint32_t>(character);
    return index < latin.size() ? latin[index] : upper_case(character);
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

std::uint32_t hash_folded(std::wstring_view text) noexcept
{
    std::uint32_t hash = 2166136261u; // FNV-1a
    for (const wchar_t character : text)
        hash = (hash ^ static_cast<std::uint32_t>(folded(character))) * 16777619u;
    return hash ^ (hash >> 15);
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
