#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace automation {

/// The character in upper case, unit by unit and the same in every locale: how names and keys are compared.
wchar_t folded(wchar_t character) noexcept;

/// Whether two texts are equal without regard to case.
bool equal_folded(std::wstring_view one, std::wstring_view other) noexcept;

/// A hash that is equal for texts that are equal without regard to case.
std::uint32_t hash_folded(std::wstring_view text) noexcept;

/// The position of the first `part` in `text` at or behind `from`, without regard to case; npos if there is none.
/// An empty part is found at `from`, as long as that lies in the text.
std::size_t find_folded(std::wstring_view text, std::wstring_view part, std::size_t from = 0) noexcept;

/// For containers whose keys are equal without regard to case.
struct FoldedHash {
    std::size_t operator()(std::wstring_view text) const noexcept { return hash_folded(text); }
};
struct FoldedEqual {
    bool operator()(std::wstring_view one, std::wstring_view other) const noexcept { return equal_folded(one, other); }
};

} // namespace automation
