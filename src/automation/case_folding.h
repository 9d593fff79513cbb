#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace automation {

/// Latin-1 in upper case: nearly every character of a name is there.
inline constexpr std::array<wchar_t, 256> folded_latin = []() {
    std::array<wchar_t, 256> table{};
    for (unsigned i = 0; i < table.size(); ++i) {
        const bool lower = (i >= L'a' && i <= L'z') || (i >= 0xE0 && i <= 0xFE && i != 0xF7);
        table[i] = static_cast<wchar_t>(lower ? i - 0x20 : i);
    }
    table[0xFF] = 0x178; // y with diaeresis
    return table;
}();

wchar_t folded_beyond_latin(wchar_t character) noexcept;

/// The character in upper case, unit by unit and the same in every locale: how names and keys are compared.
constexpr wchar_t folded(wchar_t character) noexcept
{
    const auto index = static_cast<std::uint32_t>(character);
    return index < folded_latin.size() ? folded_latin[index] : folded_beyond_latin(character);
}

/// Whether two texts are equal without regard to case.
bool equal_folded(std::wstring_view one, std::wstring_view other) noexcept;

/// A hash that is equal for texts that are equal without regard to case. It is the same in every process.
constexpr std::uint32_t hash_folded(std::wstring_view text) noexcept
{
    std::uint32_t hash = 2166136261u; // FNV-1a
    for (const wchar_t character : text)
        hash = (hash ^ static_cast<std::uint32_t>(folded(character))) * 16777619u;
    return hash ^ (hash >> 15);
}

/// Such a hash for the tables of this process. It depends on secret numbers, new in every process: nobody can make up names of
/// which more than a few have the same one.
std::uint32_t table_hash(std::wstring_view text) noexcept;

/// The position of the first `part` in `text` at or behind `from`, without regard to case; npos if there is none.
/// An empty part is found at `from`, as long as that lies in the text.
std::size_t find_folded(std::wstring_view text, std::wstring_view part, std::size_t from = 0) noexcept;

/// For containers whose keys are equal without regard to case.
struct FoldedHash {
    std::size_t operator()(std::wstring_view text) const noexcept { return table_hash(text); }
};
struct FoldedEqual {
    bool operator()(std::wstring_view one, std::wstring_view other) const noexcept { return equal_folded(one, other); }
};

} // namespace automation
