#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// The texts of profile files: what the system gives of a section and of a file, and the files themselves.
namespace profile {

struct Entry {
    std::wstring_view key, value;
};

/// The entries among the lines of a section, which a NUL stands between. A line without "=" is none; a value may hold more of them.
std::vector<Entry> entries(std::wstring_view lines);

/// The names of sections, which a NUL stands between, without the blanks around them and without empty ones.
std::vector<std::wstring_view> section_names(std::wstring_view list);

/// The value of a key in a file's text, which comes in pieces as ini::read takes it. Sections and keys are found in any case.
/// The section's line must be its name in brackets and nothing else; blanks around keys and values don't count; a comment is
/// a line like any other. Empty when there is no such section or no such key before the next one.
std::wstring find_value(const std::function<std::wstring_view()>& next_piece, std::wstring_view section, std::wstring_view key);

} // namespace profile
