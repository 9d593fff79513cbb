#pragma once

#include <cstdint>
#include <string_view>

/// The library's texts for its users, in two languages.
namespace messages {

enum class Language : std::int32_t { German = 0, English = 1 };

/// The text with this number, as a template; empty when there is none.
std::wstring_view text(std::int32_t number, Language language) noexcept;

} // namespace messages
